#include "Quelm/Application/InstanceRequest.h"

#include "TextCore/UTF8.h"

#include <algorithm>

namespace quelm {

namespace {

constexpr std::string_view magic("QuelmOp\x01", 8);
constexpr std::size_t lengthBytes = InstanceRequest::headerLength - magic.size();
/// What the system itself allows.
constexpr std::size_t longestPath = 4096;

bool canBeSent(std::string_view path) {
    return path.starts_with('/') && path.size() < longestPath && path.find('\0') == std::string_view::npos &&
           utf8::isValid(path);
}

} // namespace

std::optional<std::string> InstanceRequest::encoded() const {
    std::string body;
    for (const std::string& path : paths) {
        if (!canBeSent(path))
            return std::nullopt;
        body.append(path).push_back('\0');
        if (body.size() > longestBody)
            return std::nullopt;
    }
    std::string bytes(magic);
    for (std::size_t index = 0; index < lengthBytes; ++index)
        bytes.push_back(static_cast<char>(body.size() >> (8 * index) & 0xFF));
    return bytes + body;
}

std::optional<std::size_t> InstanceRequest::bodyLength(std::string_view header) {
    if (header.size() != headerLength || !header.starts_with(magic))
        return std::nullopt;
    std::size_t length = 0;
    for (std::size_t index = 0; index < lengthBytes; ++index)
        length |= std::size_t{static_cast<unsigned char>(header[magic.size() + index])} << (8 * index);
    return length <= longestBody ? std::optional(length) : std::nullopt;
}

std::optional<InstanceRequest> InstanceRequest::fromBody(std::string_view body) {
    InstanceRequest request;
    while (!body.empty()) {
        const std::size_t end = body.find('\0');
        if (end == std::string_view::npos || !canBeSent(body.substr(0, end)))
            return std::nullopt;
        request.paths.emplace_back(body.substr(0, end));
        body.remove_prefix(end + 1);
    }
    return request;
}

} // namespace quelm
