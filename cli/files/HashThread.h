#ifndef OLMKIT_CLI_FILES_HASHTHREAD_H
#define OLMKIT_CLI_FILES_HASHTHREAD_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/files/Sha256.h"

namespace olmkit {

// A SHA-256 that may not be computed yet: lower-case hexadecimal digits, empty when the library
// failed.
using HashText = std::future<std::string>;

// Returns one that is already computed.
HashText readyHash(std::string text);

// Whether get() would return at once; true for an invalid future.
bool isReady(const HashText& hash);

// Hashes blocks of bytes on a thread of its own. The thread starts with the first block; the
// destructor waits until all blocks are hashed. If the system has no thread left, the caller's
// thread does the work.
class HashThread {
public:
    using Block = std::vector<std::byte>;

    static constexpr std::size_t blockSize = std::size_t{256} << 10; // fewer bytes are not worth it

    HashThread() = default;
    HashThread(const HashThread&) = delete;
    HashThread& operator=(const HashThread&) = delete;
    ~HashThread();

    // Adds a block to a hash; blocks of one hash are added in order. Waits while too many bytes are
    // still to be hashed.
    void add(const std::shared_ptr<Sha256>& hash, Block block);

    // Ends a hash after the blocks that were added to it.
    HashText end(std::shared_ptr<Sha256> hash);

    // Returns an empty block with room for blockSize bytes or more.
    Block emptyBlock();

private:
    struct Task {
        std::shared_ptr<Sha256> hash;
        Block block;
        std::promise<std::string> text; // of the whole hash; used when the block is empty
    };

    bool start();
    void post(Task task);
    void run();
    void recycle(Block block);
    static void work(Task& task);

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> tasks;     // the first one is in progress
    std::size_t waiting = 0;    // bytes in `tasks`
    std::vector<Block> blocks;  // empty, for emptyBlock()
    std::size_t blockBytes = 0; // capacity of `blocks`
    bool isEnding = false;
    bool isRefused = false; // the system has no thread left
    std::thread thread;
};

} // namespace olmkit

#endif
