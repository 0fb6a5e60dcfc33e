#pragma once

#include <cstddef>
#include <cstring>

#include "core/gps/nmea_record.h"
#include "core/gps/port_source.h"

namespace tolvane {

// Feeds recorded text to the parser the way the port reader does: each read
// is appended as text (zero bytes made '$', see CopyReadAsText) to a
// 2048-byte buffer; when a read would not fit, the buffer is parsed first
// and the tail the parser returns is moved to its front. The tests, the
// fuzz target and the benchmark share it so that all three drive the parser
// alike.
class PortReaderFeed {
  public:
    static constexpr int kBufferSize = 2048;
    static constexpr std::size_t kMaxRead = 1024;

    PortReaderFeed(NmeaRecord& record, GsvPaging& paging, NmeaParseStats* stats = nullptr,
                   NmeaTalkers talkers = NmeaTalkers::kGpOnly)
        : record_(record), paging_(paging), stats_(stats), talkers_(talkers) {}

    // One read of at most kMaxRead bytes.
    void Read(const char* bytes, std::size_t count) {
        const int counted = static_cast<int>(count);
        if (bufferedBytes_ + counted >= kBufferSize) Parse();
        // A tail that fills the buffer by itself can never be completed: the
        // reader would wait for room forever, so it is given up here.
        if (bufferedBytes_ + counted >= kBufferSize) Clear();
        const int zeroBytes = CopyReadAsText(buffer_ + textLength_, bytes, counted);
        if (stats_ != nullptr) stats_->zeroBytes += zeroBytes;
        textLength_ += count;
        bufferedBytes_ += counted;
    }

    // Feeds all of text in reads of readSize bytes, parsing every
    // readsPerParse reads as the once-a-second parse does, and once at the end.
    void ReadAll(const char* text, std::size_t size, std::size_t readSize, int readsPerParse) {
        int reads = 0;
        for (std::size_t offset = 0; offset < size; offset += readSize) {
            const std::size_t remaining = size - offset;
            Read(text + offset, remaining < readSize ? remaining : readSize);
            if (++reads % readsPerParse == 0) Parse();
        }
        Parse();
    }

    void Parse() {
        if (bufferedBytes_ <= 0) return;
        const char* tail = ParseNmeaBuffer(record_, paging_, buffer_, stats_, talkers_);
        if (tail == nullptr) {
            Clear();
            return;
        }
        const std::ptrdiff_t offset = tail - buffer_;
        textLength_ -= static_cast<std::size_t>(offset);
        std::memmove(buffer_, tail, textLength_ + 1);
        bufferedBytes_ -= static_cast<int>(offset);
    }

    const char* Buffer() const { return buffer_; }

  private:
    void Clear() {
        buffer_[0] = '\0';
        textLength_ = 0;
        bufferedBytes_ = 0;
    }

    NmeaRecord& record_;
    GsvPaging& paging_;
    NmeaParseStats* stats_;
    NmeaTalkers talkers_;
    char buffer_[kBufferSize] = {};
    std::size_t textLength_ = 0;  // of the text in buffer_
    int bufferedBytes_ = 0;       // counted the reader's way
};

}  // namespace tolvane
