#pragma once

class QThreadPool;

namespace quelm {

/// The threads of all work in the background. They are not Qt's common ones: Qt lets those paint large areas and waits
/// for them on the main thread, which would then stand still for as long as every one of them has long work.
///
/// There are enough of them for one that takes long, such as a file that comes slowly, not to keep the others waiting.
/// When the application goes, it waits for what has been begun or is to begin.
QThreadPool& backgroundThreads();

} // namespace quelm
