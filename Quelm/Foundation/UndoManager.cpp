#include "Quelm/Foundation/UndoManager.h"

#include "Quelm/Foundation/UndoLine.h"
#include "TextCore/Check.h"

#include <QSet>

namespace quelm {

using Direction = UndoLine::Direction;

class UndoManager::Implementation {
public:
    enum class Phase : std::uint8_t { idle, announcing, undoing, redoing };

    /// The step that would be taken next; null for none.
    const UndoStep* next(Direction direction) const { return isSuspended ? nullptr : line.next(direction); }

    QString name(Direction direction) const {
        const UndoStep* step = next(direction);
        return step ? step->text() : QString();
    }

    /// Takes the next step, if there is one and none is being taken.
    static void take(UndoManager& manager, Direction direction);

    UndoLine line;
    Phase phase = Phase::idle;
    bool isSuspended = false;
    /// The youngest step of when the manager was last suspended or no longer was: nothing joins it any more.
    StepID closedStep = 0;
    /// Targets whose end is listened for.
    QSet<const QObject*> targets;
};

UndoManager::UndoManager(QObject* parent) : QObject(parent), implementation_(std::make_shared<Implementation>()) {}

UndoManager::~UndoManager() {
    // A handler that is running keeps the line, which must not go on with the step.
    implementation_->line.clear();
}

UndoManager::StepID UndoManager::registerHandler(QObject* target, std::function<void()> handler) {
    require(target != nullptr, "an undo step has a target");
    UndoLine& line = implementation_->line;
    if (!implementation_->targets.contains(target)) {
        implementation_->targets.insert(target);
        connect(target, &QObject::destroyed, this, &UndoManager::forgetTarget);
    }
    const StepID step = line.add({target, std::move(handler)});
    if (!line.isRunning())
        Q_EMIT changed();
    return step;
}

void UndoManager::forgetTarget(QObject* target) {
    implementation_->targets.remove(target);
    implementation_->line.dropDeadHandlers();
    // Told from the event loop: whoever asks the widget that the target is a part of would ask one that is half gone.
    if (!implementation_->line.isRunning())
        QMetaObject::invokeMethod(this, &UndoManager::changed, Qt::QueuedConnection);
}

void UndoManager::setActionName(const QString& name) {
    const UndoLine& line = implementation_->line;
    UndoStep* step = line.isRunning() ? line.running() : line.lastRegistered();
    if (!step || step->text() == name)
        return;
    step->setText(name);
    if (!line.isRunning())
        Q_EMIT changed();
}

bool UndoManager::canUndo() const {
    return implementation_->next(Direction::undo) != nullptr;
}

bool UndoManager::canRedo() const {
    return implementation_->next(Direction::redo) != nullptr;
}

QString UndoManager::undoActionName() const {
    return implementation_->name(Direction::undo);
}

QString UndoManager::redoActionName() const {
    return implementation_->name(Direction::redo);
}

QString UndoManager::undoMenuItemTitle() const {
    const QString name = undoActionName();
    return name.isEmpty() ? tr("Deshacer") : tr("Deshacer %1").arg(name);
}

QString UndoManager::redoMenuItemTitle() const {
    const QString name = redoActionName();
    return name.isEmpty() ? tr("Rehacer") : tr("Rehacer %1").arg(name);
}

void UndoManager::undo() {
    Implementation::take(*this, Direction::undo);
}

void UndoManager::redo() {
    Implementation::take(*this, Direction::redo);
}

void UndoManager::Implementation::take(UndoManager& manager, Direction direction) {
    // What is called here may destroy the manager.
    const std::shared_ptr<Implementation> state = manager.implementation_;
    const QPointer<UndoManager> self(&manager);
    using enum Phase;
    if (state->phase != idle || !state->next(direction))
        return;

    state->phase = announcing;
    Q_EMIT manager.willUndoOrRedo();
    state->phase = idle;
    if (!self || !state->next(direction))
        return;

    state->phase = direction == Direction::undo ? undoing : redoing;
    const std::exception_ptr error = state->line.take(direction);
    state->phase = idle;
    if (self)
        Q_EMIT manager.changed();
    if (error)
        std::rethrow_exception(error);
}

void UndoManager::setSuspended(bool isSuspended) {
    if (implementation_->isSuspended == isSuspended)
        return;
    const UndoLine& line = implementation_->line;
    if (const UndoStep* youngest = line.next(Direction::undo))
        implementation_->closedStep = youngest->stepID();
    implementation_->isSuspended = isSuspended;
    if (!line.isRunning())
        Q_EMIT changed();
}

bool UndoManager::isSuspended() const {
    return implementation_->isSuspended;
}

bool UndoManager::isUndoing() const {
    return implementation_->phase == Implementation::Phase::undoing;
}

bool UndoManager::isRedoing() const {
    return implementation_->phase == Implementation::Phase::redoing;
}

UndoManager::StepID UndoManager::openStep() const {
    const UndoLine& line = implementation_->line;
    if (line.isRunning() || !canUndo() || canRedo())
        return 0;
    const StepID step = line.next(Direction::undo)->stepID();
    return step == implementation_->closedStep ? 0 : step;
}

void UndoManager::noteOpenStepGrew() {
    require(openStep() != 0, "a step is open");
    implementation_->line.grow();
}

void UndoManager::removeAllActions() {
    UndoLine& line = implementation_->line;
    const bool wasEmpty = line.isEmpty();
    line.clear();
    if (!wasEmpty && !line.isRunning())
        Q_EMIT changed();
}

void UndoManager::setStateToken(StateToken* token) {
    implementation_->line.setStateToken(token);
}

} // namespace quelm
