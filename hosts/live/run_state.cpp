#include "run_state.h"

#include <QObject>

QString wordFor(RunState state) {
    switch (state) {
        case RunState::AS_KEPT:
            return QObject::tr("As kept");
        case RunState::FORMING:
            return QObject::tr("Forming");
        case RunState::COMPUTING:
            return QObject::tr("Computing");
        case RunState::SETTLED:
            return QObject::tr("Settled");
        case RunState::NOT_SETTLED:
            return QObject::tr("Not settled");
        case RunState::PAUSED:
            return QObject::tr("Paused");
        case RunState::FAILED:
            return QObject::tr("Stopped");
    }
    return {};
}
