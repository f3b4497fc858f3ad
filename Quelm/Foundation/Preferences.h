#pragma once

#include "JSONCore/JSONStyle.h"

#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

class QSettings;

/// The user's preferences. Every call reads or writes the per-user store, so that a change counts from the next use on
/// and nothing has to be told about it. An unknown stored text reads as the default. For the main thread.
namespace quelm::Preferences {

/// The editor in which a file opens.
enum class InitialMode : std::uint8_t {
    /// The tree when the JSON is valid, else the text.
    automatic,
    /// The same: an invalid file has no tree to show.
    tree,
    /// Always the text, as the file has it.
    text,
};

/// In the order in which they are offered to the user.
inline constexpr std::array allInitialModes{InitialMode::automatic, InitialMode::tree, InitialMode::text};

/// "automatic", "tree" or "text": what is stored.
std::string_view rawValue(InitialMode mode);

JSONStyle::Indent indent();
void setIndent(JSONStyle::Indent indent);

bool sortsKeys();
void setSortsKeys(bool sortsKeys);

InitialMode initialMode();
void setInitialMode(InitialMode mode);

/// How formatting, pretty exports and copies are written: never compact.
JSONStyle preferredStyle();

/// The store behind the functions above, for other facts that belong to the user's installation (the place of windows).
std::unique_ptr<QSettings> openStore();

/// Writes what was set in the store, in the background: that waits for the disk. Whoever opens it meanwhile sees it all
/// the same.
void writeInBackground(std::unique_ptr<QSettings> store);

/// While it lives, preferences are kept in one file of its own instead of the user's: for tests. Not nested.
class FileOverride {
public:
    explicit FileOverride(const QString& path);
    ~FileOverride();
    FileOverride(const FileOverride&) = delete;
    FileOverride& operator=(const FileOverride&) = delete;
};

} // namespace quelm::Preferences
