#pragma once

#include "Quelm/Documents/JSONDocument.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <string_view>

namespace quelm {

/// A document as it is after its file has been read.
std::shared_ptr<JSONDocument> documentWithText(std::string_view text);

/// "[0,0,0…]" with that many elements.
std::string arrayOfZeros(std::int64_t count);

/// Arrays in arrays, the innermost with one 0.
std::string nestedArrays(std::int64_t depth);

/// A folder that is gone after the test.
class TemporaryFolder {
public:
    /// The path of a file with those bytes.
    QString write(const QString& name, std::string_view bytes) const;
    QString path(const QString& name) const { return folder_.filePath(name); }
    static std::string contents(const QString& path);

private:
    QTemporaryDir folder_;
};

} // namespace quelm
