#include "Benchmarks/Peers/Peers.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonParseError>

namespace quelm::bench::peers {

namespace {

class QtJSON final : public JSONLibrary {
public:
    std::string_view name() const override { return "qjsondocument"; }
    bool isSlow() const override { return true; }

    bool parse(std::string_view paddedText) override {
        QJsonParseError error;
        document_ = QJsonDocument::fromJson(
            QByteArray::fromRawData(paddedText.data(), static_cast<qsizetype>(paddedText.size())), &error);
        return error.error == QJsonParseError::NoError;
    }

    void discardDocument() override { document_ = QJsonDocument(); }

    bool canWrite(WriteLayout layout) const override { return layout != WriteLayout::sorted; }

    bool write(WriteLayout layout) override {
        output_ = document_.toJson(layout == WriteLayout::compact ? QJsonDocument::Compact : QJsonDocument::Indented);
        return !output_.isEmpty();
    }

    std::string_view output() const override { return {output_.constData(), static_cast<std::size_t>(output_.size())}; }
    void discardOutput() override { output_ = QByteArray(); }

private:
    QJsonDocument document_;
    QByteArray output_;
};

} // namespace

std::unique_ptr<JSONLibrary> qJsonDocument() {
    return std::make_unique<QtJSON>();
}

} // namespace quelm::bench::peers
