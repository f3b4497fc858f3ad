#include "Quelm/Foundation/StateToken.h"

#include "TextCore/Check.h"

namespace quelm {

void StateToken::advance() {
    previous_ = current_;
    current_ = ++last_;
    Q_EMIT currentChanged();
}

void StateToken::moveTo(Value token) {
    require(token <= last_, "a state to return to has been before");
    if (token == current_)
        return;
    previous_ = current_;
    current_ = token;
    Q_EMIT currentChanged();
}

} // namespace quelm
