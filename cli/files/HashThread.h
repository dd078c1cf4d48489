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

// A SHA-256 that may still be in the making: hexadecimal digits, empty when the library has failed.
using HashText = std::future<std::string>;

// One that is made already.
HashText readyHash(std::string text);

// Whether it can be had without waiting; true for none at all.
bool isReady(const HashText& hash);

// Hashes blocks of bytes beside the thread that makes them. Its own thread starts with the first
// block and ends with the object, all hashed; where the system has no thread for it, the caller's
// own does the work.
class HashThread {
public:
    using Block = std::vector<std::byte>;

    static constexpr std::size_t blockSize = std::size_t{256} << 10; // bytes worth a thread's while

    HashThread() = default;
    HashThread(const HashThread&) = delete;
    HashThread& operator=(const HashThread&) = delete;
    ~HashThread();

    // Adds a block to a hash; blocks of one hash are added in order. Waits while many bytes are not
    // hashed yet.
    void add(const std::shared_ptr<Sha256>& hash, Block block);

    // Ends a hash behind the blocks that were added to it.
    HashText end(std::shared_ptr<Sha256> hash);

    // An empty block with room for blockSize bytes and more.
    Block emptyBlock();

private:
    struct Task {
        std::shared_ptr<Sha256> hash;
        Block block;
        std::promise<std::string> text; // of the hash, when the block is empty
    };

    bool start();
    void post(Task task);
    void run();
    void recycle(Block block);
    static void work(Task& task);

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> tasks;     // the first one is being worked on
    std::size_t waiting = 0;    // bytes in them
    std::vector<Block> blocks;  // empty ones
    std::size_t blockBytes = 0; // room in those
    bool isEnding = false;
    bool isRefused = false; // the system has no thread
    std::thread thread;
};

} // namespace olmkit

#endif
