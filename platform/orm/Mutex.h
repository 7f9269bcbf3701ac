#pragma once

#include <mutex>

#include "Export.h"

namespace orm {

// The core library's lock: a plain mutex with lock and unlock, usable with
// std::lock_guard.
class VUREL_EXPORT mutex {
public:
    void lock() { m_.lock(); }
    void unlock() { m_.unlock(); }
    bool try_lock() { return m_.try_lock(); }

private:
    std::mutex m_;
};

}  // namespace orm
