#pragma once

#include "JSONCore/JSONParseError.h"

#include <QString>

#include <optional>

namespace quelm {

/// Why a content could not be converted to another form: a plain value.
class ConversionError {
public:
    explicit ConversionError(JSONParseError error);
    static ConversionError cancelled() { return ConversionError(JSONParseError::cancelled()); }
    static ConversionError outOfMemory();

    /// It was called off, which is never told to anybody.
    bool isCancellation() const { return parseError_ == JSONParseError::cancelled(); }

    /// Where the text stops being JSON; absent for a lack of memory.
    const std::optional<JSONParseError>& parseError() const { return parseError_; }

    /// "Línea 3, columna 14: Se esperaba ',' o '}'", or that there is not enough memory, in the user's language.
    QString description() const;

    friend bool operator==(const ConversionError&, const ConversionError&) = default;

private:
    ConversionError() = default;

    std::optional<JSONParseError> parseError_;
};

} // namespace quelm
