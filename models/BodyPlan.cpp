// SPDX-License-Identifier: MIT
#include "models/BodyPlan.h"

#include <limits>

namespace sayloft {
namespace {

using Verdict = BodyPlan::Verdict;

BodyPlan refusal(const QString& problem) {
    return {.verdict = Verdict::refuse, .problem = problem};
}

bool isSameFile(const ResponseHead& head, const LinkedEntity& linked, const ResumeNote& note) {
    if (linked.sha256 != note.sha256)
        return false;
    return head.etag.isEmpty() || head.etag == note.etag;
}

BodyPlan planRest(const ResponseHead& head, const LinkedEntity& linked, const StoredPart& stored) {
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    const bool fits = head.range && head.range->first == stored.length &&
                      head.length.value_or(0) <= largest - stored.length;
    if (!fits || !isSameFile(head, linked, stored.note))
        return {.verdict = Verdict::startOver};
    BodyPlan plan{.offset = stored.length, .size = head.range->size};
    if (!plan.size && head.length)
        plan.size = stored.length + *head.length;
    if (stored.note.size && plan.size && stored.note.size != plan.size)
        return {.verdict = Verdict::startOver};
    if (!plan.size)
        plan.size = stored.note.size;
    return plan;
}

BodyPlan planWhole(const ResponseHead& head) {
    const bool isPart =
        head.status == 206 && head.range &&
        (head.range->first != 0 || (head.range->size && *head.range->size - 1 != head.range->last));
    if (isPart)
        return refusal(QStringLiteral("the host sends a part of the file only"));
    return {.size = head.length};
}

}  // namespace

BodyPlan planBody(const ResponseHead& head, const LinkedEntity& linked,
                  const std::optional<StoredPart>& stored) {
    if (head.isEncoded)
        return refusal(QStringLiteral("the host sends the file in a form that was not asked for"));
    BodyPlan plan =
        head.status == 206 && stored ? planRest(head, linked, *stored) : planWhole(head);
    if (plan.verdict != Verdict::take || !linked.size)
        return plan;
    if (plan.size && plan.size != linked.size)
        return refusal(QStringLiteral("the file should have %1 bytes and has %2")
                           .arg(*linked.size)
                           .arg(*plan.size));
    plan.size = linked.size;
    return plan;
}

}  // namespace sayloft
