// SPDX-License-Identifier: MIT
#include "helper/StarterRecogniser.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

namespace sayloft::helper {
namespace {

// WORKAROUND: PocketSphinx 0.8+5prealpha ends the process by itself on some damaged models, right
// after this message. It must not do so without a word.
void reportFatalOnly(void* /*unused*/, err_lvl_t level, const char* /*format*/, ...) {
    if (level != ERR_FATAL)
        return;
    std::fputs("parakeet-server: PocketSphinx cannot work with the starter model\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

struct FreeConfiguration {
    void operator()(cmd_ln_t* configuration) const { cmd_ln_free_r(configuration); }
};
using Configuration = std::unique_ptr<cmd_ln_t, FreeConfiguration>;

// A language weight of 5 (default 6.5) and 5000 HMMs a frame (default 30000) made the fewest errors
// of twelve settings measured on read and on synthesised speech, in less time than the defaults.
Configuration configure(const StarterModel& model) {
    return Configuration(cmd_ln_init(nullptr, ps_args(), TRUE,             //
                                     "-hmm", model.acousticModel.c_str(),  //
                                     "-lm", model.languageModel.c_str(),   //
                                     "-dict", model.dictionary.c_str(),    //
                                     "-lw", "5", "-maxhmmpf", "5000", nullptr));
}

}  // namespace

void StarterRecogniser::FreeDecoder::operator()(ps_decoder_s* decoder) const {
    ps_free(decoder);
}

StarterRecogniser::StarterRecogniser(Decoder decoder) : m_decoder(std::move(decoder)) {}

StarterRecogniser::~StarterRecogniser() = default;

Result<std::unique_ptr<StarterRecogniser>> StarterRecogniser::load(const StarterModel& model) {
    const auto checked = checkStarterModel(model);
    if (const auto* problem = std::get_if<Problem>(&checked))
        return *problem;
    err_set_logfp(nullptr);
    err_set_callback(reportFatalOnly, nullptr);
    const Configuration configuration = configure(model);
    if (!configuration)
        return Problem{"PocketSphinx does not take its settings"};
    Decoder decoder(ps_init(configuration.get()));
    if (!decoder)
        return Problem{"PocketSphinx cannot load the starter model"};
    return std::unique_ptr<StarterRecogniser>(new StarterRecogniser(std::move(decoder)));
}

std::string StarterRecogniser::recognise(const Samples& samples) {
    if (samples.empty())
        return {};
    const std::lock_guard lock(m_mutex);
    // The whole utterance at once: its mean is then taken over all of it, which is more exact than
    // an estimate from what went before. Together with a new stream, which begins to learn about
    // the noise afresh, it makes every request independent of the others.
    if (ps_start_stream(m_decoder.get()) < 0 || ps_start_utt(m_decoder.get()) < 0)
        return {};
    ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, TRUE);
    ps_end_utt(m_decoder.get());
    const char* words = ps_get_hyp(m_decoder.get(), nullptr);
    return words == nullptr ? std::string() : std::string(words);
}

}  // namespace sayloft::helper
