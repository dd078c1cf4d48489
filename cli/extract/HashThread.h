#ifndef OLMKIT_CLI_EXTRACT_HASHTHREAD_H
#define OLMKIT_CLI_EXTRACT_HASHTHREAD_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "cli/extract/Sha256.h"

namespace olmkit {

// Hashes blocks of bytes beside the thread that makes them. Its own thread starts with the first
// block and ends with the object.
class HashThread {
public:
    static constexpr std::size_t blockSize = std::size_t{256} << 10; // bytes

    HashThread() = default;
    HashThread(const HashThread&) = delete;
    HashThread& operator=(const HashThread&) = delete;
    ~HashThread();

    // Adds a block to a hash, which is borrowed until finish(). Blocks of one hash are added in
    // order. Waits while many blocks are not hashed yet.
    void add(Sha256& hash, std::vector<std::byte> block);

    // An empty block with room for blockSize bytes.
    std::vector<std::byte> emptyBlock();

    // Waits until every block is hashed.
    void finish();

private:
    struct Task {
        Sha256* hash;
        std::vector<std::byte> block;
    };

    void run();

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> tasks; // the first one is being hashed
    std::vector<std::vector<std::byte>> emptyBlocks;
    bool isEnding = false;
    std::thread thread;
};

} // namespace olmkit

#endif
