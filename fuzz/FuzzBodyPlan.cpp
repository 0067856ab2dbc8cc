// SPDX-License-Identifier: MIT
// What a host says before it sends a model, a line for each header, and what is there of the file.
#include "fuzz/support/FuzzInput.h"
#include "models/BodyPlan.h"

using namespace sayloft;

namespace {

std::optional<qint64> atLeast(qint64 least, const QByteArray& digits) {
    bool isNumber = false;
    const qint64 value = digits.toLongLong(&isNumber);
    return isNumber && value >= least ? std::optional(value) : std::nullopt;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    const auto line = [&input] { return fuzz::byteArray(input.line()); };
    ResponseHead head;
    head.status = line().toInt();
    head.length = atLeast(0, line());
    head.range = ContentRange::parse(line());
    head.etag = line();
    const QByteArray linkedTag = line();
    const LinkedEntity linked = LinkedEntity::fromHeaders(linkedTag, line());
    std::optional<StoredPart> stored;
    if (const auto length = atLeast(1, line())) {
        stored = StoredPart{.note = {}, .length = *length};
        stored->note.etag = line();
        stored->note.size = atLeast(0, line());
        stored->note.sha256 = line();
    }
    const BodyPlan plan = planBody(head, linked, stored);
    fuzz::require((plan.verdict == BodyPlan::Verdict::refuse) == !plan.problem.isEmpty());
    if (plan.verdict != BodyPlan::Verdict::take)
        return 0;
    fuzz::require(plan.offset == 0 || (stored && plan.offset == stored->length));
    fuzz::require(plan.size.value_or(0) >= 0);
    return 0;
}
