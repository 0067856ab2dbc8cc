// SPDX-License-Identifier: MIT
#include "helper/RequestStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>

namespace sayloft::helper {
namespace {

// Chunked transfer adds the chunks' sizes to the body, the form its headers to the file.
constexpr std::size_t framingBytes = std::size_t{1024} * 1024;

}  // namespace

RequestStream::RequestStream(socket_t connection, const RequestLimits& limits)
    : m_connection(connection),
      m_limits(limits),
      m_deadline(Clock::now() + limits.transferTime),
      m_budget(limits.headBytes) {}

bool RequestStream::waitFor(Direction direction) const {
    const short events = direction == Direction::Read ? POLLIN : POLLOUT;
    pollfd entry{m_connection, events, 0};
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
        const int ready = ::poll(&entry, 1, static_cast<int>(std::max(left.count(), 0L)));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

bool RequestStream::is_readable() const {
    return m_begin < m_end || waitFor(Direction::Read);
}

bool RequestStream::is_writable() const {
    return waitFor(Direction::Write);
}

// The number of bytes received; 0 at the end of the stream, negative on failure.
ssize_t RequestStream::refill() {
    if (!waitFor(Direction::Read))
        return -1;
    const ssize_t count = ::recv(m_connection, m_buffer.data(), m_buffer.size(), MSG_DONTWAIT);
    if (count <= 0)
        return count;
    m_begin = 0;
    m_end = static_cast<std::size_t>(count);
    m_received += m_end;
    return count;
}

// WORKAROUND: cpp-httplib 0.11.4 reads the head byte by byte, hence the buffer.
ssize_t RequestStream::read(char* target, size_t size) {
    size_t done = 0;
    while (done < size) {
        if (m_begin == m_end) {
            const ssize_t count = refill();
            if (count < 0)
                return -1;
            if (count == 0)
                break;
        }
        const std::size_t part = std::min(size - done, m_end - m_begin);
        if (part > m_budget)
            return -1;
        std::memcpy(target + done, m_buffer.data() + m_begin, part);
        m_begin += part;
        m_budget -= part;
        done += part;
    }
    return static_cast<ssize_t>(done);
}

ssize_t RequestStream::write(const char* bytes, size_t size) {
    if (!m_answered)
        m_deadline = Clock::now() + m_limits.transferTime;
    m_answered = true;
    if (!waitFor(Direction::Write))
        return -1;
    return ::send(m_connection, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

// Nothing of ours asks who is at the other end: it is always this machine.
void RequestStream::get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const {}
void RequestStream::get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const {}

void RequestStream::beginBody() {
    m_budget = m_limits.bodyBytes + framingBytes;
}

// Not by looking at the next byte: one that a client sends too many would hide that it left.
bool RequestStream::isClientThere() const {
    pollfd entry{m_connection, POLLRDHUP, 0};
    return ::poll(&entry, 1, 0) == 0;
}

void RequestStream::finish() {
    m_deadline = Clock::now() + m_limits.lingerTime;
    ::shutdown(m_connection, SHUT_WR);
    while (refill() > 0) {
    }
}

}  // namespace sayloft::helper
