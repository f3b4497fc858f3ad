#pragma once

#include "Benchmarks/Peers/JSONLibrary.h"
#include "Benchmarks/Peers/RapidJSONDocument.h"
#include "Benchmarks/Peers/RapidJSONSortedWriter.h"

#include <optional>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string_view>

namespace quelm::bench::rapidjsonpeer {

// Each source that includes this chooses by macros what RapidJSON is built with, so each gets a class of its
// own.
namespace {

class RapidJSONLibrary final : public JSONLibrary {
public:
    explicit RapidJSONLibrary(std::string_view name) : name_(name) {}

    std::string_view name() const override { return name_; }

    bool parse(std::string_view paddedText) override {
        document_.emplace();
        // The padding ends the text with a zero. NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage)
        document_->Parse<parseFlags>(paddedText.data());
        return !document_->HasParseError();
    }

    void discardDocument() override { document_.reset(); }

    bool canWrite(WriteLayout) const override { return true; }
    bool writesNumbersAsGiven() const override { return true; }

    bool parseForWriting(std::string_view paddedText) override {
        document_.emplace();
        // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage)
        return parseWithMarkedNumbers(*document_, paddedText.data());
    }

    bool write(WriteLayout layout) override {
        output_.emplace();
        if (layout == WriteLayout::compact) {
            library::Writer<library::StringBuffer> writer(*output_);
            RawNumberHandler handler(writer);
            return document_->Accept(handler);
        }
        library::PrettyWriter<library::StringBuffer> writer(*output_);
        writer.SetIndent(' ', 2);
        RawNumberHandler handler(writer);
        return layout == WriteLayout::sorted ? SortedWriter(handler).write(*document_) : document_->Accept(handler);
    }

    std::string_view output() const override { return {output_->GetString(), output_->GetSize()}; }
    void discardOutput() override { output_.reset(); }

private:
    std::string_view name_;
    std::optional<library::Document> document_;
    std::optional<library::StringBuffer> output_;
};

} // namespace

} // namespace quelm::bench::rapidjsonpeer
