// SPDX-License-Identifier: MIT
#include "tests/support/TrayHost.h"

#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XfceSession.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

constexpr auto xfceSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
)";

constexpr auto lxqtSettings = R"([General]
__userfile__=true
panels=panel1
[panel1]
alignment=0
plugins=statusnotifier
position=Top
panelSize=32
iconSize=22
[statusnotifier]
alignment=Right
type=statusnotifier
)";

}  // namespace

TrayHost::TrayHost(TrayHostKind kind, const XServer& display, const SessionBus& bus) {
    QProcessEnvironment environment = display.environment();
    bus.addTo(environment);
    environment.insert(QStringLiteral("HOME"), m_home.path());
    for (const char* folder : {"XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_CURRENT_DESKTOP"})
        environment.remove(QString::fromLatin1(folder));
    if (kind == TrayHostKind::xfcePanel)
        startXfce(environment);
    else
        startLxqt(environment);
    const TrayClient client(bus);
    if (!waitUntil([&client] { return client.isTrayThere(); }, std::chrono::seconds(20)))
        throw std::runtime_error("the panel did not bring up its tray");
}

void TrayHost::startXfce(const QProcessEnvironment& environment) {
    writeFile(
        m_home.filePath(QStringLiteral(".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml")),
        xfceSettings);
    m_settings = std::make_unique<ChildProgram>(xfconfd(), QStringList(), environment);
    m_program = std::make_unique<ChildProgram>(QStringLiteral("xfce4-panel"),
                                               QStringList(QStringLiteral("--disable-wm-check")),
                                               environment);
}

void TrayHost::startLxqt(const QProcessEnvironment& environment) {
    writeFile(m_home.filePath(QStringLiteral(".config/lxqt/panel.conf")), lxqtSettings);
    m_program =
        std::make_unique<ChildProgram>(QStringLiteral("lxqt-panel"), QStringList(), environment);
}

}  // namespace sayloft::test
