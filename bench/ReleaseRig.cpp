// SPDX-License-Identifier: MIT
#include "bench/ReleaseRig.h"

#include <QProcess>

#include <stdexcept>

namespace sayloft::bench {

ReleaseRig::ReleaseRig() {
    if (!m_sayloft.waitForLog(QStringLiteral("event tap installed OK")) ||
        !m_sayloft.waitForHelper())
        throw std::runtime_error("the app did not come up: " + m_sayloft.log().toStdString());
}

void ReleaseRig::doByHand(const Steps& steps,
                          const std::function<void(Clock::time_point)>& arrived) const {
    const QString line = QStringLiteral(
                             "curl -s -F 'file=@%1;filename=a.wav;type=audio/wav' "
                             "-F response_format=text "
                             "http://127.0.0.1:8090/v1/audio/transcriptions "
                             "| xclip -selection %2 && xdotool key %3")
                             .arg(m_bundle.recording(), steps.selection, steps.pasteKey);
    QProcess shell;
    shell.setProcessEnvironment(m_desktop.environment());
    shell.setStandardOutputFile(QProcess::nullDevice());
    const auto started = Clock::now();
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), line});
    arrived(started);
    if (!shell.waitForFinished() || shell.exitCode() != 0)
        throw std::runtime_error("curl, xclip or xdotool failed");
}

}  // namespace sayloft::bench
