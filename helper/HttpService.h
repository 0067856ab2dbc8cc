// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"
#include "helper/RecognitionDesk.h"
#include "helper/RequestStream.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include <httplib.h>

namespace sayloft::helper {

/// The HTTP side: `GET /` answers that the server is there, `POST /v1/audio/transcriptions` takes a
/// form with `file` (a WAV file) and `response_format` (`text`, or `json`, which is also what is
/// meant when it is missing) and answers with the transcript. Everything malformed gets 400 and one
/// line that says why. A client that leaves, or ends its side, before its turn has come gets
/// nothing more than 503. Listens on 127.0.0.1 only; every connection carries one request.
class HttpService : private httplib::Server {
public:
    using Recognise = RecognitionDesk::Recognise;

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
                    const httplib::ContentReader& reader);
    [[nodiscard]] Result<std::string> readBody(const Request& request,
                                               const httplib::ContentReader& reader) const;

    RequestLimits m_limits;
    std::optional<RecognitionDesk> m_desk;  ///< there while serving
};

}  // namespace sayloft::helper
