// SPDX-License-Identifier: MIT
#include "storage/tests/TracedCalls.h"

#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

namespace sayloft::test {
namespace {

/// The first half of a call in which another one returned.
struct Begun {
    QString text;
    std::size_t before = 0;
};

/// "\x61\x62" is "ab".
QByteArray decoded(QString hex) {
    return QByteArray::fromHex(hex.remove(QStringLiteral("\\x")).toLatin1());
}

TracedCall::Argument toArgument(const QString& argument) {
    static const QRegularExpression form(
        QStringLiteral(R"re(^([^"<]*)(?:<([^>]*)>(?:\(deleted\))?|"([^"]*)")?$)re"));
    const QRegularExpressionMatch match = form.match(argument);
    if (!match.hasMatch())
        throw std::runtime_error("not traced to its end: " + argument.toStdString());
    return {.word = match.captured(1), .text = decoded(match.captured(2) + match.captured(3))};
}

/// `text` is "close(3<\x2f\x61>) = 0", for example.
TracedCall toCall(const QString& text, std::size_t before) {
    static const QRegularExpression form(QStringLiteral(R"re(^(\w+)\((.*)\) += (-?\d+))re"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        throw std::runtime_error("no call: " + text.toStdString());
    TracedCall call;
    call.name = match.captured(1);
    call.before = before;
    for (const QString& argument : match.captured(2).split(QStringLiteral(", "))) {
        if (!argument.startsWith(QStringLiteral("AT_FDCWD")))
            call.arguments.push_back(toArgument(argument));
    }
    call.result = match.captured(3).toLongLong();
    return call;
}

bool changesNames(const TracedCall& call) {
    return call.name.startsWith(QStringLiteral("rename")) ||
           call.name.startsWith(QStringLiteral("link")) ||
           call.name.startsWith(QStringLiteral("unlink"));
}

bool isNamedByBoth(const TracedCall& change, const TracedCall& call) {
    if (!changesNames(change) || !(changesNames(call) || call.name == QStringLiteral("openat")))
        return false;
    const QStringList paths = call.paths();
    return std::any_of(paths.begin(), paths.end(), [others = change.paths()](const QString& path) {
        return others.contains(path);
    });
}

}  // namespace

QStringList TracedCall::paths() const {
    QStringList paths;
    for (const Argument& argument : arguments) {
        if (argument.text.startsWith('/'))
            paths.append(QString::fromUtf8(argument.text));
    }
    return paths;
}

QStringList callsInFull() {
    return {QStringLiteral("-y"), QStringLiteral("-xx"), QStringLiteral("-s"),
            QStringLiteral("100000")};
}

std::vector<TracedCall> tracedCalls(const QByteArray& trace) {
    // Neither signals nor ends of threads.
    static const QRegularExpression form(QStringLiteral(
        R"re(^(\d+) +(?:<\.\.\. \w+ resumed>)?([^-+].*?)( <unfinished \.\.\.>)?$)re"));
    std::vector<TracedCall> calls;
    std::map<QString, Begun> begun;  // by thread
    for (const QString& line : QString::fromLatin1(trace).split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch match = form.match(line);
        if (!match.hasMatch())
            continue;
        Begun& call = begun[match.captured(1)];
        if (call.text.isEmpty())
            call.before = calls.size();
        call.text += match.captured(2);
        if (!match.captured(3).isEmpty())
            continue;
        calls.push_back(toCall(call.text, call.before));
        call = {};
    }
    return calls;
}

bool isOrderInDoubt(const std::vector<TracedCall>& calls) {
    for (std::size_t later = 0; later < calls.size(); ++later) {
        for (std::size_t other = calls[later].before; other < later; ++other) {
            if (isNamedByBoth(calls[other], calls[later]) ||
                isNamedByBoth(calls[later], calls[other]))
                return true;
        }
    }
    return false;
}

}  // namespace sayloft::test
