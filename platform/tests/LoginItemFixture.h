// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/LoginItemXdg.h"
#include "tests/support/TempHome.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sayloft::test {

/// A variable of the test's environment, until it is put back.
class EnvironmentValue {
public:
    EnvironmentValue(const char* name, const QString& value)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name)) {
        qputenv(name, QFile::encodeName(value));
    }
    ~EnvironmentValue() {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

private:
    const char* m_name;
    const bool m_wasSet;
    const QByteArray m_before;
};

/// Autostart folders of the test's own, and a program that a login may start.
class LoginItemFixture : public testing::Test {
protected:
    LoginItemFixture() { install(program); }

    [[nodiscard]] QString path(const char* name) const {
        return m_directory.filePath(QString::fromUtf8(name));
    }

    static void install(const QString& executable) {
        writeFile(executable, "#!/bin/sh\n");
        QFile::setPermissions(executable, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// `@` stands for the program's path.
    void writeEntry(const QString& file, const char* lines) const {
        writeFile(file, "[Desktop Entry]\nType=Application\nName=Sayloft\n" +
                            QByteArray(lines).replace('@', program.toUtf8()));
    }

private:
    QTemporaryDir m_directory;

protected:
    const QString program = path("apps/My Sayloft.app/Contents/bin/sayloft");
    const QString users = path("config/autostart/org.sayloft.Sayloft.desktop");
    const QString systems = path("xdg/autostart/org.sayloft.Sayloft.desktop");
    LoginItemXdg item{program};

private:
    const EnvironmentValue m_configHome{"XDG_CONFIG_HOME", path("config")};
    const EnvironmentValue m_configDirs{"XDG_CONFIG_DIRS",
                                        path("nothing") + QLatin1Char(':') + path("xdg")};
};

}  // namespace sayloft::test
