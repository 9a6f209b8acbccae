// SPDX-License-Identifier: Apache-2.0
// Finds the elements of many lists by name while a file is read; walking the lists would take time
// in the square of the file's size.
#ifndef FRRUCI_COMPAT_UCI_NAME_INDEX_H
#define FRRUCI_COMPAT_UCI_NAME_INDEX_H

#include <cstddef>

#include "uci.h"

namespace frruci::uci {

class NameIndex {
public:
    NameIndex() = default;
    ~NameIndex();
    NameIndex(const NameIndex &) = delete;
    NameIndex &operator=(const NameIndex &) = delete;

    /// The element that was added first under that name of that list; null if there is none.
    uci_element *find(const uci_list *head, const char *name) const;
    /// Notes an element of the list; false without memory. A name that is known keeps its element.
    bool add(const uci_list *head, uci_element *element);

private:
    struct Slot {
        const uci_list *head; ///< null: free
        uci_element *element;
    };

    Slot *place(const uci_list *head, const char *name) const;
    bool makeRoom();

    Slot *slots_ = nullptr;
    std::size_t slotCount_ = 0; ///< a power of two
    std::size_t used_ = 0;
};

} // namespace frruci::uci

#endif
