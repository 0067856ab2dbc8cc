// SPDX-License-Identifier: MIT
// Stands for StarterRecogniser.cpp in a build without the starter.
#include "helper/StarterRecogniser.h"

#include <utility>

namespace sayloft::helper {

void StarterRecogniser::FreeDecoder::operator()(ps_decoder_s* /*decoder*/) const {}

StarterRecogniser::StarterRecogniser(Decoder decoder) : m_decoder(std::move(decoder)) {}

StarterRecogniser::~StarterRecogniser() = default;

Result<std::unique_ptr<StarterRecogniser>> StarterRecogniser::load(const StarterModel& /*model*/) {
    return Problem{"this build has no starter recogniser"};
}

std::string StarterRecogniser::recognise(const Samples& /*samples*/) {
    return {};
}

}  // namespace sayloft::helper
