// SPDX-License-Identifier: MIT
#include "tests/support/XfceSession.h"

#include "tests/support/TempHome.h"

#include <QDir>

#include <stdexcept>

namespace sayloft::test {
namespace {

constexpr auto settings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-session" version="1.0">
  <property name="general" type="empty">
    <property name="FailsafeSessionName" type="string" value="Failsafe"/>
    <property name="SaveOnExit" type="bool" value="false"/>
  </property>
  <property name="sessions" type="empty">
    <property name="Failsafe" type="empty">
      <property name="IsFailsafe" type="bool" value="true"/>
      <property name="Count" type="int" value="1"/>
      <property name="Client0_Command" type="array">
        <value type="string" value="%1"/>
      </property>
      <property name="Client0_Priority" type="int" value="15"/>
    </property>
  </property>
</channel>
)";

}  // namespace

XfceSession::XfceSession(const QString& program, const QProcessEnvironment& environment,
                         const SessionBus& bus)
    : m_environment(environment) {
    bus.addTo(m_environment);
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_configuration.path());
    writeFile(m_configuration.filePath(
                  QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-session.xml")),
              QString::fromUtf8(settings).arg(program).toUtf8());
    m_settings = std::make_unique<ChildProgram>(xfconfd(), QStringList(), m_environment);
    m_session = std::make_unique<ChildProgram>(QStringLiteral("xfce4-session"), QStringList(),
                                               m_environment);
}

void XfceSession::logOut() {
    run(QStringLiteral("xfce4-session-logout"),
        {QStringLiteral("--logout"), QStringLiteral("--fast")}, {}, m_environment);
}

QString xfconfd() {
    const QDir libraries(QStringLiteral("/usr/lib"));
    for (const QString& folder : libraries.entryList({QStringLiteral("*-linux-gnu*")})) {
        QString path = libraries.filePath(folder + QStringLiteral("/xfce4/xfconf/xfconfd"));
        if (QFile::exists(path))
            return path;
    }
    throw std::runtime_error("xfconfd is not installed");
}

}  // namespace sayloft::test
