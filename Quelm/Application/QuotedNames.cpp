#include "Quelm/Application/QuotedNames.h"

#include "TextCore/Check.h"

#include <QCoreApplication>

namespace quelm {

namespace {

struct QuotedNames {
    Q_DECLARE_TR_FUNCTIONS(quelm::QuotedNames)
};

/// So many are named, or one more when that is the last.
constexpr qsizetype most = 4;

QString quoted(const QString& name) {
    return QuotedNames::tr("\"%1\"").arg(name);
}

} // namespace

QString quotedNames(const QStringList& names) {
    require(!names.isEmpty(), "there is a name");
    if (names.size() == 1)
        return quoted(names.front());
    const bool areAllNamed = names.size() <= most + 1;
    QStringList front;
    for (const QString& name : names.first(areAllNamed ? names.size() - 1 : most))
        front.append(quoted(name));
    const QString last = areAllNamed ? quoted(names.back()) : QuotedNames::tr("%1 más").arg(names.size() - most);
    return QuotedNames::tr("%1 y %2").arg(front.join(QuotedNames::tr(", ")), last);
}

} // namespace quelm
