// SPDX-License-Identifier: MIT
#pragma once

#include "helper/ModelFile.h"
#include "helper/Problem.h"
#include "helper/WavUpload.h"

#include <memory>
#include <mutex>
#include <string>

struct ps_decoder_s;

namespace sayloft::helper {

/// PocketSphinx with a model that stays loaded. Its results do not depend on what it heard before.
/// In a build without the starter, loading always fails.
class StarterRecogniser {
public:
    /// Takes about half a second and 100 MB. Silences PocketSphinx's log for the whole process.
    [[nodiscard]] static Result<std::unique_ptr<StarterRecogniser>> load(const StarterModel& model);

    ~StarterRecogniser();
    StarterRecogniser(const StarterRecogniser&) = delete;
    StarterRecogniser& operator=(const StarterRecogniser&) = delete;

    /// The words heard, in lower case and without punctuation; empty when there were none. Any
    /// thread; calls wait for each other.
    [[nodiscard]] std::string recognise(const Samples& samples);

private:
    struct FreeDecoder {
        void operator()(ps_decoder_s* decoder) const;
    };
    using Decoder = std::unique_ptr<ps_decoder_s, FreeDecoder>;

    explicit StarterRecogniser(Decoder decoder);

    std::mutex m_mutex;
    Decoder m_decoder;  ///< guarded by m_mutex
};

}  // namespace sayloft::helper
