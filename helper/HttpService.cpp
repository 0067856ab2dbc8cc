// SPDX-License-Identifier: MIT
#include "helper/HttpService.h"

#include "helper/MultipartForm.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

namespace sayloft::helper {
namespace {

constexpr const char* transcriptionPath = "/v1/audio/transcriptions";
constexpr const char* plainText = "text/plain; charset=utf-8";
constexpr std::size_t connectionsAtATime = 32;  // idle threads cost next to nothing
constexpr int waitingConnections = 128;

void refuse(httplib::Response& response, const Problem& problem) {
    response.status = 400;
    response.set_content(problem.reason + "\n", plainText);
}

// WORKAROUND: cpp-httplib 0.11.4 shares the port with other programs by default, which would hide
// that another server has it.
void ownThePort(socket_t socket) {
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
}

// WORKAROUND: cpp-httplib 0.11.4 loses the first boundary of a form when it arrives in pieces and
// takes parameters after the boundary for part of it. A leading blank keeps it from parsing the
// form, we do. Ranges and compression would only change answers of a few words.
void keepToThePlainRequest(httplib::Request& request) {
    request.ranges.clear();
    request.headers.erase("Range");
    request.headers.erase("Accept-Encoding");
    for (auto& [name, value] : request.headers) {
        if (strcasecmp(name.c_str(), "Content-Type") == 0)
            value.insert(0, " ");
    }
}

// Answers of the library itself: its codes for requests that it does not take become 400.
void explainError(const httplib::Request& /*request*/, httplib::Response& response) {
    if (!response.body.empty())
        return;
    if (response.status == 404) {
        response.set_content("there is nothing at this address\n", plainText);
    } else if (response.status >= 500) {
        response.set_content("the server could not work on the request\n", plainText);
    } else {
        refuse(response, {"the request is not understood"});
    }
}

void explainException(const httplib::Request& /*request*/, httplib::Response& response,
                      const std::exception_ptr& /*exception*/) {
    response.status = 500;
}

std::optional<std::size_t> contentLength(const httplib::Request& request) {
    const std::string text = request.get_header_value("Content-Length");
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return length;
}

Problem tooLong(const RequestLimits& limits) {
    return {"the request is longer than " + std::to_string(limits.bodyBytes >> 20U) + " MiB"};
}

enum class AnswerFormat { Text, Json };

struct Question {
    Samples samples;
    AnswerFormat format = AnswerFormat::Json;
};

Result<Question> readQuestion(const std::string& contentType, const std::string& body) {
    const Result<MultipartForm> parsed = MultipartForm::parse(contentType, body);
    if (const auto* problem = std::get_if<Problem>(&parsed))
        return *problem;
    const auto& form = std::get<MultipartForm>(parsed);
    const std::string_view format = form.value("response_format").value_or("json");
    if (format != "text" && format != "json")
        return Problem{"response_format must be text or json"};
    const std::optional<std::string_view> file = form.value("file");
    if (!file)
        return Problem{"the form has no file"};
    Result<Samples> samples = parseWav(*file);
    if (const auto* problem = std::get_if<Problem>(&samples))
        return *problem;
    return Question{std::move(std::get<Samples>(samples)),
                    format == "text" ? AnswerFormat::Text : AnswerFormat::Json};
}

std::string asJson(const std::string& transcript) {
    using nlohmann::json;
    return json{{"text", transcript}}.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

HttpService::HttpService(const RequestLimits& limits) : m_limits(limits) {
    new_task_queue = [] { return new httplib::ThreadPool(connectionsAtATime); };
    set_socket_options(ownThePort);
    set_error_handler(Handler(explainError));
    set_exception_handler(explainException);
    const auto check = [this](const Request& request, Response& response) {
        const auto checked = checkHead(request);
        if (const auto* problem = std::get_if<Problem>(&checked)) {
            refuse(response, *problem);
            return HandlerResponse::Handled;
        }
        return HandlerResponse::Unhandled;
    };
    set_pre_routing_handler(check);
    set_expect_100_continue_handler([check](const Request& request, Response& response) {
        return check(request, response) == HandlerResponse::Handled ? response.status : 100;
    });
    Get("/", [](const Request&, Response& response) {
        response.set_content("The speech server is ready.\n", plainText);
    });
    Post(transcriptionPath,
         [this](const Request& request, Response& response, const httplib::ContentReader& reader) {
             transcribe(request, response, reader);
         });
}

Result<std::monostate> HttpService::bind(std::uint16_t port) {
    errno = 0;
    // WORKAROUND: cpp-httplib 0.11.4 lets five connections wait, so that of fifty at once most wait
    // for a second to be tried again; a second listen() only changes that number.
    if (bind_to_port("127.0.0.1", port) && ::listen(svr_sock_, waitingConnections) == 0)
        return std::monostate{};
    return Problem{"cannot listen on 127.0.0.1 port " + std::to_string(port) + ": " +
                   (errno == 0 ? "unknown reason" : std::strerror(errno))};
}

void HttpService::serve(Recognise recognise) {
    m_desk.emplace(std::move(recognise));
    listen_after_bind();
}

void HttpService::stop() {
    Server::stop();
}

bool HttpService::process_and_close_socket(socket_t connection) {
    RequestStream stream(connection, m_limits);
    converse(stream);
    stream.finish();
    ::close(connection);
    return true;
}

// What escapes here would end the program, so nothing does.
void HttpService::converse(RequestStream& stream) {
    try {
        bool closed = true;
        process_request(stream, true, closed, [&stream](Request& request) {
            keepToThePlainRequest(request);
            // The library's servers leave this one to us; a handler sees nothing of its connection.
            request.progress = [&stream](auto, auto) { return stream.isClientThere(); };
            stream.beginBody();
        });
        if (stream.hasAnswered() || !stream.hasReceived())
            return;
        stream.write_format(
            "HTTP/1.1 400 Bad Request\r\nConnection: close\r\n"
            "Content-Type: text/plain\r\nContent-Length: 32\r\n\r\n"
            "the request's head is malformed\n");
    } catch (...) {
        return;
    }
}

Result<std::monostate> HttpService::checkHead(const Request& request) const {
    if (request.has_header("Content-Encoding"))
        return Problem{"a compressed request is not understood"};
    if (request.get_header_value_count("Content-Length") > 1)
        return Problem{"the request has more than one Content-Length"};
    if (request.has_header("Transfer-Encoding")) {
        if (strcasecmp(request.get_header_value("Transfer-Encoding").c_str(), "chunked") != 0)
            return Problem{"of transfer encodings only chunked is understood"};
        if (request.has_header("Content-Length"))
            return Problem{"the request has both a Content-Length and a Transfer-Encoding"};
        return std::monostate{};
    }
    if (!request.has_header("Content-Length")) {
        if (request.method == "GET" || request.method == "HEAD")
            return std::monostate{};
        return Problem{"the request has no Content-Length"};
    }
    const std::optional<std::size_t> length = contentLength(request);
    if (!length)
        return Problem{"the request's Content-Length is not a number"};
    if (*length > m_limits.bodyBytes)
        return tooLong(m_limits);
    return std::monostate{};
}

Result<std::string> HttpService::readBody(const Request& request,
                                          const httplib::ContentReader& reader) const {
    // In one piece, so that a long recording's memory goes back to the system afterwards.
    std::string body;
    body.reserve(contentLength(request).value_or(0));
    bool fits = true;
    const bool complete = reader([&](const char* bytes, std::size_t size) {
        fits = body.size() + size <= m_limits.bodyBytes;
        if (fits)
            body.append(bytes, size);
        return fits;
    });
    if (!fits)
        return tooLong(m_limits);
    if (!complete)
        return Problem{"the request ended early or took too long"};
    return body;
}

void HttpService::transcribe(const Request& request, Response& response,
                             const httplib::ContentReader& reader) {
    const std::string contentType = request.get_header_value("Content-Type");
    if (!isMultipartFormData(contentType))
        return refuse(response, {"the request is not multipart/form-data"});
    Result<std::string> body = readBody(request, reader);
    if (const auto* problem = std::get_if<Problem>(&body))
        return refuse(response, *problem);
    Result<Question> question = readQuestion(contentType, std::get<std::string>(body));
    if (const auto* problem = std::get_if<Problem>(&question))
        return refuse(response, *problem);

    body = std::string();  // what waits in line should not take twice its memory
    auto& [samples, format] = std::get<Question>(question);
    const std::optional<std::string> transcript =
        m_desk->transcribe(std::move(samples), [&request] { return request.progress(0, 0); });
    if (!transcript) {
        response.status = 503;
        return;
    }
    response.status = 200;
    if (format == AnswerFormat::Text)
        response.set_content(*transcript, plainText);
    else
        response.set_content(asJson(*transcript), "application/json");
}

}  // namespace sayloft::helper
