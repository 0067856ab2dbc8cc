// SPDX-License-Identifier: MIT
#include "bench/InstantBundle.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/TempHome.h"

#include <QFile>
#include <QList>

#include <stdexcept>

namespace sayloft::bench {

InstantBundle::InstantBundle(const QString& root) : m_root(root) {
    test::run(QStringLiteral("cp"),
              {QStringLiteral("-r"), QStringLiteral(SAYLOFT_BUNDLE_DIR), m_root});
    const QString helper = m_root + QStringLiteral("/Contents/Helpers/parakeet-server");
    if (!QFile::remove(helper) || !QFile::copy(QStringLiteral(INSTANT_SERVER), helper))
        throw std::runtime_error("the helper cannot be replaced");
}

QString InstantBundle::recording() const {
    return model() + QStringLiteral(".wav");
}

InstantBundle::Request InstantBundle::lastRequest(int number) const {
    const QList<QByteArray> lines =
        test::readFile(model() + QStringLiteral(".times")).trimmed().split('\n');
    const QList<QByteArray> moments = lines.last().split(' ');
    if (lines.size() != number || moments.size() != 2)
        throw std::runtime_error("a dictation did not make exactly one request");
    return {.arrived = Clock::time_point(Clock::duration(moments[0].toLongLong())),
            .answered = Clock::time_point(Clock::duration(moments[1].toLongLong()))};
}

QString InstantBundle::model() const {
    return m_root + QStringLiteral("/Contents/Resources/models/starter-en-us.model");
}

}  // namespace sayloft::bench
