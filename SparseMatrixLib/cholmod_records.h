// Owning pointers to CHOLMOD's records: one resource, one owner.
#pragma once

#include <cholmod.h>

#include <memory>

#include "config_singleton.h"

namespace kmat {

/// Releases a record through the shared workspace. The owning pointers call it only when they hold
/// a record, so an empty matrix never touches the workspace.
struct ReleaseRecord {
    void operator()(cholmod_dense* record) const {
        cholmod_free_dense(&record, ConfigSingleton::getCommonPtr());
    }
    void operator()(cholmod_sparse* record) const {
        cholmod_free_sparse(&record, ConfigSingleton::getCommonPtr());
    }
    void operator()(cholmod_triplet* record) const {
        cholmod_free_triplet(&record, ConfigSingleton::getCommonPtr());
    }
    void operator()(cholmod_factor* record) const {
        cholmod_free_factor(&record, ConfigSingleton::getCommonPtr());
    }
};

template <typename Record>
using RecordPtr = std::unique_ptr<Record, ReleaseRecord>;

}  // namespace kmat
