#pragma once

#include <cstddef>

#include "Export.h"
#include "orm/Allocator.h"

namespace orm {

// Fixed-size object storage carved from blocks of `blockCount` objects.
// Freed slots are reused first, blocks are only given back when the pool
// dies, so a steady state allocates nothing.
class VUREL_EXPORT BlockPool {
public:
    BlockPool(size_t objectSize, size_t blockCount, char const* debugLabel, size_t alignment = alignof(std::max_align_t));
    ~BlockPool();
    BlockPool(BlockPool const&) = delete;
    BlockPool& operator=(BlockPool const&) = delete;

    void* alloc();
    void free(void* p);

    size_t getObjectSize() const { return objectSize_; }
    size_t getBlockCount() const { return blocks_.size(); }
    size_t getObjectsPerBlock() const { return blockCount_; }
    size_t getUsedCount() const { return used_; }
    char const* getDebugLabel() const { return label_; }

private:
    struct FreeSlot {
        FreeSlot* next;
    };

    void addBlock_();

    size_t objectSize_;
    size_t blockCount_;
    size_t alignment_;
    char const* label_;
    size_t used_ = 0;
    FreeSlot* freeList_ = nullptr;
    vector<void*> blocks_;
};

}  // namespace orm
