#include "orm/BlockPool.h"

#include <algorithm>
#include <bit>
#include <new>

#include "orm/Log.h"

namespace orm {

namespace {

size_t roundUp(size_t value, size_t step) { return (value + step - 1) / step * step; }

// Aligned allocation takes powers of two only; any other request is raised to the next one.
size_t validAlignment(size_t alignment, char const* label) {
    size_t const valid = std::bit_ceil(std::max(alignment, alignof(void*)));
    if (alignment != 0 && !std::has_single_bit(alignment))
        orm_vlogf("VUREL", 8, "BlockPool '%s': alignment %zu is not a power of two, using %zu", label, alignment,
                  valid);
    return valid;
}

}  // namespace

BlockPool::BlockPool(size_t objectSize, size_t blockCount, char const* debugLabel, size_t alignment)
    : blockCount_(std::max<size_t>(blockCount, 1)),
      label_(debugLabel ? debugLabel : "") {
    alignment_ = validAlignment(alignment, label_);
    // A free slot stores the link to the next one, so a slot is at least a pointer.
    objectSize_ = roundUp(std::max(objectSize, sizeof(FreeSlot)), alignment_);
}

BlockPool::~BlockPool() {
    if (used_ != 0)
        orm_vlogf("VUREL", 16, "BlockPool '%s' destroyed with %zu objects in use", label_, used_);
    for (void* block : blocks_)
        ::operator delete(block, std::align_val_t(alignment_));
}

void BlockPool::addBlock_() {
    char* block = static_cast<char*>(::operator new(objectSize_ * blockCount_, std::align_val_t(alignment_)));
    blocks_.push_back(block);
    // Thread the new slots onto the free list so that the lowest address is handed out first.
    for (size_t i = blockCount_; i-- > 0;) {
        auto* slot = reinterpret_cast<FreeSlot*>(block + i * objectSize_);
        slot->next = freeList_;
        freeList_ = slot;
    }
}

void* BlockPool::alloc() {
    if (!freeList_)
        addBlock_();
    FreeSlot* slot = freeList_;
    freeList_ = slot->next;
    ++used_;
    return slot;
}

void BlockPool::free(void* p) {
    if (!p)
        return;
    auto* slot = static_cast<FreeSlot*>(p);
    slot->next = freeList_;
    freeList_ = slot;
    --used_;
}

}  // namespace orm
