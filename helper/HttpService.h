// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"
#include "helper/RequestStream.h"
#include "helper/WavUpload.h"

#include <cstdint>
#include <functional>
#include <string>
#include <variant>

#include <httplib.h>

namespace sayloft::helper {

/// The HTTP side: `GET /` answers that the server is there, `POST /v1/audio/transcriptions` takes a
/// form with `file` (a WAV file) and `response_format` (`text`, or `json`, which is also what is
/// meant when it is missing) and answers with the transcript. Everything malformed gets 400 and one
/// line that says why. Listens on 127.0.0.1 only; every connection carries one request.
class HttpService : private httplib::Server {
public:
    /// Called on any of the service's threads, several at a time.
    using Recognise = std::function<std::string(const Samples&)>;

    explicit HttpService(const RequestLimits& limits = {});

    /// From here on clients may connect; they wait until `serve` runs.
    [[nodiscard]] Result<std::monostate> bind(std::uint16_t port);

    /// Answers requests until `stop` is called, from another thread. Needs a successful `bind`.
    void serve(Recognise recognise);
    void stop();

private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    bool process_and_close_socket(socket_t connection) override;
    void converse(RequestStream& stream);

    /// What can be told from the head alone, before any of the body is read.
    [[nodiscard]] Result<std::monostate> checkHead(const Request& request) const;
    void transcribe(const Request& request, Response& response,
                    const httplib::ContentReader& reader) const;
    [[nodiscard]] Result<std::string> readBody(const Request& request,
                                               const httplib::ContentReader& reader) const;

    RequestLimits m_limits;
    Recognise m_recognise;
};

}  // namespace sayloft::helper
