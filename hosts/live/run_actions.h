#pragma once

#include <QAction>
#include <QObject>

#include "live_run.h"

/// Play, pause, single step, start afresh.
class RunActions : public QObject {
    Q_OBJECT

public:
    explicit RunActions(LiveRun& liveRun);

    QList<QAction*> actions() const { return {play, step, restart}; }

private:
    void showState();

    LiveRun& run;
    QAction* play;
    QAction* step;
    QAction* restart;
    bool isShownAtWork = false;
    bool isShownAsKept = false;
};
