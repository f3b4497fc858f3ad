#pragma once

#include "Quelm/Foundation/UndoManager.h"

#include <QObject>

#include <utility>

namespace quelm {

/// A number whose changes can be undone, in the way that changes are registered everywhere.
class UndoableNumber : public QObject {
public:
    explicit UndoableNumber(UndoManager& manager) : manager_(manager) {}

    int value() const { return value_; }

    /// Advances the token with every change.
    void setStateToken(StateToken* token) { token_ = token; }

    void set(int value) {
        const int old = std::exchange(value_, value);
        if (token_)
            token_->advance();
        manager_.registerUndo<UndoableNumber>(this, [old](UndoableNumber& number) { number.set(old); });
    }

    /// A change that no step takes back.
    void setWithoutStep(int value) {
        value_ = value;
        if (token_)
            token_->advance();
    }

    /// A change that belongs to the open step, which goes back beyond it.
    void grow(int value) {
        setWithoutStep(value);
        manager_.noteOpenStepGrew();
    }

private:
    UndoManager& manager_;
    StateToken* token_ = nullptr;
    int value_ = 0;
};

} // namespace quelm
