#pragma once

#include "Benchmarks/Peers/RapidJSONDocument.h"

#include <algorithm>
#include <vector>

namespace quelm::bench::rapidjsonpeer {

/// Passes the events of a document on to a handler with the members of every object in the order of their
/// names' bytes. RapidJSON itself has no such writer; its members cannot be moved by std::sort either, so
/// pointers to them are sorted, all objects sharing one array.
template <typename Handler>
class SortedWriter {
public:
    explicit SortedWriter(Handler& handler) : handler_(handler) {}

    bool write(const library::Value& value) {
        if (value.IsObject())
            return writeObject(value);
        if (value.IsArray())
            return writeArray(value);
        return value.Accept(handler_);
    }

private:
    using Member = library::Value::Member;

    static std::string_view text(const library::Value& string) {
        return {string.GetString(), string.GetStringLength()};
    }

    bool writeArray(const library::Value& array) {
        bool isWritten = handler_.StartArray();
        for (const library::Value& element : array.GetArray())
            isWritten = isWritten && write(element);
        return isWritten && handler_.EndArray(array.Size());
    }

    bool writeObject(const library::Value& object) {
        const std::size_t first = members_.size();
        for (const Member& member : object.GetObject())
            members_.push_back(&member);
        std::sort(members_.begin() + static_cast<std::ptrdiff_t>(first), members_.end(),
                  [](const Member* left, const Member* right) { return text(left->name) < text(right->name); });
        bool isWritten = handler_.StartObject();
        for (std::size_t index = first; index < first + object.MemberCount(); ++index) {
            const Member& member = *members_[index];
            const std::string_view name = text(member.name);
            isWritten = isWritten && handler_.Key(name.data(), static_cast<library::SizeType>(name.size()), false) &&
                        write(member.value);
        }
        members_.resize(first);
        return isWritten && handler_.EndObject(object.MemberCount());
    }

    Handler& handler_;
    std::vector<const Member*> members_;
};

} // namespace quelm::bench::rapidjsonpeer
