#pragma once

#include <QObject>

#include <cstdint>

namespace quelm {

/// Names the state of something that is edited: equal tokens, same state. Every change moves to a token never seen
/// before, and undoing the change moves back. For the main thread.
class StateToken : public QObject {
    Q_OBJECT

public:
    using Value = std::uint64_t;

    explicit StateToken(QObject* parent = nullptr) : QObject(parent) {}

    Value current() const { return current_; }
    /// The token before the last change.
    Value previous() const { return previous_; }

    /// The token that `advance` would move to.
    Value next() const { return last_ + 1; }

    /// What it names was changed.
    void advance();
    /// What it names is again in a state of before.
    void moveTo(Value token);

Q_SIGNALS:
    void currentChanged();

private:
    Value current_ = 0;
    Value previous_ = 0;
    Value last_ = 0;
};

} // namespace quelm
