#pragma once

#include "FileCore/FileSaving.h"
#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/ConversionError.h"
#include "Quelm/Documents/FileError.h"
#include "Quelm/Foundation/Disposal.h"

#include <QString>
#include <QStringList>

#include <expected>
#include <functional>
#include <stop_token>
#include <string_view>
#include <utility>
#include <variant>

namespace quelm {

/// A copy of a document in another style, to be written to a file and never read. Immutable, for any thread.
class ExportDocument {
public:
    ExportDocument(JSONContent content, const JSONStyle& style) : content_(std::move(content)), style_(style) {}

    const JSONContent& content() const { return *content_; }
    const JSONStyle& style() const { return style_; }

    /// MIME types.
    static const QStringList& contentTypes();

    /// Gives the bytes of the file to `take` in pieces; see `ContentConversion::write`.
    std::expected<void, ConversionError> write(const std::function<bool(std::string_view)>& take,
                                               const std::stop_token& stop) const;

    /// Why there is no file: the content has no such form, or the file could not be written.
    using Failure = std::variant<ConversionError, FileError>;
    /// Writes it as the whole file, which stays as it was when anything fails or `options.stop` is requested in time.
    /// Blocks.
    std::expected<void, Failure> writeFile(const QString& path, const SaveOptions& options) const;

private:
    // What was edited since may leave this the last to hold it.
    DisposedInBackground<JSONContent> content_;
    JSONStyle style_;
};

} // namespace quelm
