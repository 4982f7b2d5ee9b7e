// Heap records that own a copy of a chain (the contour list, the split-and-merge regions): one
// place that allocates the pair and gives both back when either allocation fails.
#ifndef QEL_SRC_CONTOUR_CHAIN_RECORD_H
#define QEL_SRC_CONTOUR_CHAIN_RECORD_H

#include <cstddef>
#include <cstring>
#include <new>

namespace qel {

// A value-initialised Record and a new block holding a copy of the n codes (into *codes), or null
// with nothing allocated when either allocation fails. The caller stores the block in the record.
template <class Record>
Record* new_record_with_chain(const unsigned char* chain, int n, unsigned char** codes) {
    *codes = new (std::nothrow) unsigned char[static_cast<std::size_t>(n)];
    if (*codes == nullptr) return nullptr;
    Record* record = new (std::nothrow) Record();
    if (record == nullptr) {
        delete[] *codes;
        *codes = nullptr;
        return nullptr;
    }
    std::memcpy(*codes, chain, static_cast<std::size_t>(n));
    return record;
}

}  // namespace qel

#endif
