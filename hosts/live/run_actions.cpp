#include "run_actions.h"

#include "action_text.h"
#include "icons.h"

RunActions::RunActions(LiveRun& run)
    : play(new QAction(this)),
      step(new QAction(icon(Glyph::STEP), tr("S&ingle step"), this)),
      restart(new QAction(icon(Glyph::RESTART), tr("Start &afresh"), this)) {
    play->setShortcut(QKeySequence(Qt::Key_Space));
    step->setShortcut(QKeySequence(Qt::Key_Period));
    restart->setShortcut(QKeySequence("Ctrl+R"));
    explain(*step, tr("One iteration, and then a pause"));
    explain(*restart, tr("Begin again with a uniform design"));
    connect(play, &QAction::triggered, &run, [&run] { run.setPlaying(!run.isPlaying()); });
    connect(step, &QAction::triggered, &run, &LiveRun::step);
    connect(restart, &QAction::triggered, &run, &LiveRun::startAfresh);
    connect(&run, &LiveRun::playingChanged, this, &RunActions::showPlaying);
    showPlaying(run.isPlaying());
}

void RunActions::showPlaying(bool plays) {
    play->setIcon(icon(plays ? Glyph::PAUSE : Glyph::PLAY));
    play->setText(plays ? tr("&Pause") : tr("&Play"));
    explain(*play, plays ? tr("Hold the design") : tr("Let the design form"));
}
