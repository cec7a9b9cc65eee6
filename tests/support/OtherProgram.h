#pragma once

#include "store/RunStore.h"

#include <chrono>

namespace sendrel::test {

// The run database at path, opened by a program of its own (its own connection), waiting waitMs
// for a lock, and taking the file and its folder as access says.
struct OtherProgram {
    RunStore db;
    explicit OtherProgram(const QString &path, int waitMs = 10000, clsDBEngine::Access access = clsDBEngine::Access::AsFound)
    {
        db.DBEngine.setLockWait(std::chrono::milliseconds(waitMs));
        db.DBEngine.access = access;
        db.open(path);
    }
};

}  // namespace sendrel::test
