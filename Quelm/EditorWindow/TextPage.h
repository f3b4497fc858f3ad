#pragma once

#include <QWidget>

namespace quelm {

class JSONDocument;
class MessageBar;
class TextPreview;

/// A document in text mode: its text, under a strip that says where it stops being JSON, over one that says how much of
/// it is shown. It shows the content of the moment when it is made.
class TextPage : public QWidget {
    Q_OBJECT

public:
    explicit TextPage(const JSONDocument& document, QWidget* parent = nullptr);

    TextPreview& preview() const { return *preview_; }

    /// The strip with the place of the error; null for valid JSON.
    MessageBar* errorBar() const { return errorBar_; }

private:
    TextPreview* preview_;
    MessageBar* errorBar_ = nullptr;
};

} // namespace quelm
