// SPDX-License-Identifier: MIT
#pragma once

#include "models/LinkedEntity.h"
#include "models/ResponseHead.h"
#include "models/ResumeNote.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace sayloft {

/// The part of a file that is there already and that a request asks the rest of.
struct StoredPart {
    ResumeNote note;
    qint64 length = 0;  ///< at least 1
};

/// What becomes of the body of a successful response.
struct BodyPlan {
    enum class Verdict {
        take,       ///< it belongs into the file at `offset`
        startOver,  ///< it does not continue what is there: the whole file must be asked for
        refuse      ///< it is not what was asked for, for the reason in `problem`
    };

    Verdict verdict = Verdict::take;
    qint64 offset = 0;
    std::optional<qint64> size = std::nullopt;  ///< of the whole file; unknown where nobody says
    QString problem = {};
};

/// `stored` is what the request asked to continue; `linked` what the redirects before have said.
[[nodiscard]] BodyPlan planBody(const ResponseHead& head, const LinkedEntity& linked,
                                const std::optional<StoredPart>& stored);

}  // namespace sayloft
