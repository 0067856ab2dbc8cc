// SPDX-License-Identifier: MIT
#include "bench/ByHand.h"

#include <QProcess>

#include <stdexcept>

namespace sayloft::bench {

void ByHand::run(const QProcessEnvironment& environment,
                 const std::function<void(Clock::time_point)>& arrived) const {
    const QString line = QStringLiteral(
                             "curl -s -F 'file=@%1;filename=a.wav;type=audio/wav' "
                             "-F response_format=text "
                             "http://127.0.0.1:%2/v1/audio/transcriptions "
                             "| xclip -selection %3 && xdotool key %4")
                             .arg(recording, QString::number(port), selection, pasteKey);
    QProcess shell;
    shell.setProcessEnvironment(environment);
    shell.setStandardOutputFile(QProcess::nullDevice());
    const auto started = Clock::now();
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), line});
    arrived(started);
    if (!shell.waitForFinished() || shell.exitCode() != 0)
        throw std::runtime_error("curl, xclip or xdotool failed");
}

}  // namespace sayloft::bench
