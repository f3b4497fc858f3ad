#pragma once

#include "FileCore/FileLoading.h"
#include "FileCore/FileSaving.h"

#include <QString>

namespace quelm {

/// Why a file could not be loaded, in a sentence for the user.
QString loadFailureText(const LoadFailure& failure);

/// Why a file could not be saved at that path, in a sentence for the user.
QString saveFailureText(const SaveFailure& failure, const QString& path);

/// What became of the file at that path, in a sentence: that it is as it was, or where its former contents are. Empty
/// when there was no file.
QString untouchedFileText(const SaveFailure& failure, const QString& path);

} // namespace quelm
