#include "run_actions.h"

#include "action_text.h"
#include "icons.h"

namespace {

/// Whether there is something to pause: a settled design can only be let go on.
bool isAtWork(const LiveRun& run) { return run.isPlaying() && !isAtRest(run.state()); }

}  // namespace

RunActions::RunActions(LiveRun& liveRun)
    : run(liveRun),
      play(new QAction(this)),
      step(new QAction(icon(Glyph::STEP), tr("S&ingle step"), this)),
      restart(new QAction(icon(Glyph::RESTART), tr("Start &afresh"), this)) {
    play->setShortcut(QKeySequence(Qt::Key_Space));
    step->setShortcut(QKeySequence(Qt::Key_Period));
    restart->setShortcut(QKeySequence("Ctrl+R"));
    explain(*step, tr("One iteration, and then a pause"));
    explain(*restart, tr("Begin again with a uniform design"));
    connect(play, &QAction::triggered, this, [this] { run.setPlaying(!isAtWork(run)); });
    connect(step, &QAction::triggered, &run, &LiveRun::step);
    connect(restart, &QAction::triggered, &run, &LiveRun::startAfresh);
    connect(&run, &LiveRun::stateChanged, this, &RunActions::showState);
    showState();
}

void RunActions::showState() {
    const bool plays = isAtWork(run);
    const bool isKept = run.state() == RunState::AS_KEPT;
    // Drawing an icon again takes time, and states are announced often.
    if (!play->text().isEmpty() && plays == isShownAtWork && isKept == isShownAsKept) return;
    isShownAtWork = plays;
    isShownAsKept = isKept;
    play->setIcon(icon(plays ? Glyph::PAUSE : Glyph::PLAY));
    play->setText(plays ? tr("&Pause") : tr("&Play"));
    explain(*play, plays ? tr("Hold the design")
                   : isKept
                       ? tr("Let a design form afresh: the optimiser cannot continue a kept one")
                       : tr("Let the design form"));
}
