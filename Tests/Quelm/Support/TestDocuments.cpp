#include "Tests/Quelm/Support/TestDocuments.h"

#include "TextCore/Check.h"

#include <QFile>

namespace quelm {

std::shared_ptr<JSONDocument> documentWithText(std::string_view text) {
    auto document = std::make_shared<JSONDocument>();
    auto content = JSONDocument::read(SharedText(text));
    require(content.has_value(), "the text of a test is UTF-8");
    document->apply(*std::move(content));
    return document;
}

std::string arrayOfZeros(std::int64_t count) {
    std::string text = "[";
    for (std::int64_t index = 0; index < count; ++index)
        text += index == 0 ? "0" : ",0";
    return text + "]";
}

std::string nestedArrays(std::int64_t depth) {
    const auto count = static_cast<std::size_t>(depth);
    return std::string(count, '[') + "0" + std::string(count, ']');
}

QString TemporaryFolder::write(const QString& name, std::string_view bytes) const {
    QFile file(path(name));
    require(file.open(QIODevice::WriteOnly), "a test can write its files");
    file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    return path(name);
}

std::string TemporaryFolder::contents(const QString& path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "a test can read its files");
    return file.readAll().toStdString();
}

} // namespace quelm
