#pragma once

#include <new>

namespace tolvane {

// Records the misuse in the diagnostic log as "Critical Error: LinkedList"
// from source "dynamiclist" at the given line, then ends the process with
// exit code 1.
[[noreturn]] void DynamicListCriticalError(int line);

// The program's one list container: a singly linked list of records copied in
// and out by value, with a built-in cursor. Misuse is fatal on purpose: a
// list that is walked wrongly means the program's state can no longer be
// trusted. It has no lock; its owner guards it.
template <typename T>
class DynamicList {
  public:
    // The line numbers every misuse reports in the log.
    static constexpr int kLineAllocation = 105;
    static constexpr int kLineSeek = 259;
    static constexpr int kLineCurrent = 296;
    static constexpr int kLinePopFront = 579;
    static constexpr int kLineRemove = 598;

    DynamicList() = default;
    ~DynamicList() { Clear(); }
    DynamicList(const DynamicList&) = delete;
    DynamicList& operator=(const DynamicList&) = delete;

    void Clear() {
        Node* node = head_;
        while (node != nullptr) {
            Node* next = node->next;
            delete node;
            node = next;
        }
        head_ = tail_ = prev_ = current_ = nullptr;
        count_ = 0;
        position_ = -1;
    }

    void Append(const T& record) {
        Node* node = NewNode(record);
        if (tail_ == nullptr) {
            head_ = node;
        } else {
            tail_->next = node;
        }
        prev_ = tail_;
        tail_ = node;
        current_ = node;
        position_ = count_;
        ++count_;
    }

    void InsertAfterCurrent(const T& record) {
        if (count_ == 0) {
            Append(record);
            return;
        }
        // A cursor that has run off the end inserts after the last node.
        Node* after = current_ != nullptr ? current_ : prev_;
        Node* node = NewNode(record);
        node->next = after->next;
        after->next = node;
        if (tail_ == after) tail_ = node;
        position_ = current_ != nullptr ? position_ + 1 : count_;
        prev_ = after;
        current_ = node;
        ++count_;
    }

    void SeekTo(int index) {
        if (count_ == 0) return;
        if (index < 0 || index >= count_) DynamicListCriticalError(kLineSeek);
        prev_ = nullptr;
        current_ = head_;
        position_ = 0;
        while (position_ < index) MoveNext();
    }

    void MoveNext() {
        if (current_ == nullptr) return;
        prev_ = current_;
        current_ = current_->next;
        ++position_;
    }

    T& Current() {
        if (current_ == nullptr) DynamicListCriticalError(kLineCurrent);
        return current_->record;
    }

    void RemoveCurrent() {
        if (current_ == nullptr) DynamicListCriticalError(kLineRemove);
        Node* node = current_;
        if (prev_ == nullptr) {
            head_ = node->next;
        } else {
            prev_->next = node->next;
        }
        current_ = node->next;
        if (tail_ == node) {
            tail_ = prev_;
            --position_;
        }
        delete node;
        --count_;
    }

    T PopFront() {
        SeekTo(0);
        if (count_ == 0) DynamicListCriticalError(kLinePopFront);
        T record = current_->record;
        RemoveCurrent();
        return record;
    }

    bool HasCurrent() const { return current_ != nullptr; }
    int Count() const { return count_; }
    int Position() const { return position_; }

    // Visits every record from the head without moving the cursor.
    template <typename Visitor>
    void ForEach(Visitor&& visit) {
        for (Node* node = head_; node != nullptr; node = node->next) visit(node->record);
    }
    template <typename Visitor>
    void ForEach(Visitor&& visit) const {
        for (const Node* node = head_; node != nullptr; node = node->next) visit(node->record);
    }

  private:
    struct Node {
        Node* next;
        T record;
    };

    static Node* NewNode(const T& record) {
        Node* node = new (std::nothrow) Node{nullptr, record};
        if (node == nullptr) DynamicListCriticalError(kLineAllocation);
        return node;
    }

    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    Node* prev_ = nullptr;
    Node* current_ = nullptr;
    int count_ = 0;
    int position_ = -1;
};

}  // namespace tolvane
