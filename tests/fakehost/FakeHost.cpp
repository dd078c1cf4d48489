#include "tests/fakehost/FakeHost.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/fakehost/Parts.h"

namespace fakehost {

namespace {

thread_local FakeHost* currentHost = nullptr;

// Raw streams and outputs belong to the test; only handles that a call returned count.
bool isCounted(const Handle& handle) {
    return handle.isOpen && handle.kind != HandleKind::RawStream &&
           handle.kind != HandleKind::Output;
}

bool canFail(CallKind kind) {
    switch (kind) {
    case CallKind::Unlock:
    case CallKind::Free:
    case CallKind::Close:
    case CallKind::ReaderDeInit:
    case CallKind::CopyName:
    case CallKind::Routine:
        return false;
    default:
        return true;
    }
}

bool step(Plan& plan) {
    if (!plan.isSet || plan.remaining-- > 0) {
        return false;
    }
    plan.isSet = false;
    return true;
}

} // namespace

FakeHost::FakeHost() : state(std::make_unique<Parts>()), previous(currentHost) {
    currentHost = this;
}

FakeHost::~FakeHost() {
    for (const std::string& text : state->misuses) {
        ADD_FAILURE() << "misuse of the host: " << text;
    }
    currentHost = previous;
}

FakeHost& FakeHost::current() {
    if (currentHost == nullptr) {
        std::fputs("a function of the host was called without a FakeHost\n", stderr);
        std::abort();
    }
    return *currentHost;
}

void FakeHost::failCall(CallKind kind, int k, int32_t status) {
    state->plans[static_cast<size_t>(kind)] = {true, k, status};
}

void FakeHost::failAnyCall(int k, int32_t status) {
    state->anyPlan = {true, k, status};
}

void FakeHost::shortenWrite(int k, uint32_t written, int32_t status) {
    state->shortPlan = {true, k, status};
    state->shortCount = written;
}

void FakeHost::failNothing() {
    for (Plan& plan : state->plans) {
        plan.isSet = false;
    }
    state->anyPlan.isSet = false;
    state->shortPlan.isSet = false;
}

int FakeHost::hostCallCount() const {
    return state->callCount;
}

void FakeHost::resetCallCount() {
    state->callCount = 0;
}

bool FakeHost::hasFailed() const {
    return state->hasFailed;
}

bool FakeHost::takeFailure(CallKind kind, int32_t& status) {
    Plan& own = state->plans[static_cast<size_t>(kind)];
    bool fails = step(own);
    if (fails) {
        status = own.status;
    }
    if (canFail(kind) && kind != CallKind::Lock) {
        ++state->callCount;
        if (step(state->anyPlan)) {
            fails = true;
            status = state->anyPlan.status;
        }
    }
    state->hasFailed = state->hasFailed || fails;
    return fails;
}

const std::vector<HostCall>& FakeHost::calls() const {
    return state->calls;
}

std::vector<std::string> FakeHost::callTexts() const {
    std::vector<std::string> texts;
    for (const HostCall& call : state->calls) {
        texts.push_back(call.text);
    }
    return texts;
}

std::vector<std::string> FakeHost::callTexts(CallKind kind) const {
    std::vector<std::string> texts;
    for (const HostCall& call : state->calls) {
        if (call.kind == kind) {
            texts.push_back(call.text);
        }
    }
    return texts;
}

std::vector<std::string> FakeHost::callsOf(const std::string& function) const {
    std::vector<std::string> texts;
    for (const HostCall& call : state->calls) {
        if (call.name() == function) {
            texts.push_back(call.text);
        }
    }
    return texts;
}

int FakeHost::countOf(CallKind kind) const {
    return static_cast<int>(std::ranges::count(state->calls, kind, &HostCall::kind));
}

void FakeHost::forgetCalls() {
    state->calls.clear();
}

const std::vector<FakeHost::TagMap>& FakeHost::tagMaps() const {
    return state->tagMaps;
}

int FakeHost::openHandles() const {
    return static_cast<int>(std::ranges::count_if(
        state->handles, [](const auto& handle) { return isCounted(*handle); }));
}

std::vector<std::string> FakeHost::openHandleTexts() const {
    std::vector<std::string> texts;
    for (const auto& handle : state->handles) {
        if (isCounted(*handle)) {
            texts.push_back(handle->title);
        }
    }
    return texts;
}

int FakeHost::openReaders() const {
    return static_cast<int>(std::ranges::count_if(
        state->readers, [](const auto& reader) { return reader != nullptr; }));
}

int FakeHost::openBlocks() const {
    return static_cast<int>(
        std::ranges::count_if(state->blocks, [](const auto& row) { return !row.second.isFree; }));
}

int FakeHost::lockedBlocks() const {
    return static_cast<int>(
        std::ranges::count_if(state->blocks, [](const auto& row) { return row.second.locks > 0; }));
}

size_t FakeHost::blockSize(uint64_t handle) const {
    return state->blocks.at(handle).size;
}

void FakeHost::record(CallKind kind, std::string text, uint64_t user0, uint64_t user1) {
    state->calls.push_back({kind, std::move(text), user0, user1});
}

void FakeHost::misuse(const std::string& text) {
    state->misuses.push_back(text);
}

std::vector<std::string> FakeHost::takeMisuses() {
    return std::exchange(state->misuses, {});
}

Handle* FakeHost::Parts::newHandle(FakeHost& host, HandleKind kind, const std::string& title) {
    auto handle = std::make_unique<Handle>();
    setOperations(handle->record.stream);
    handle->host = &host;
    handle->kind = kind;
    handle->isOpen = true;
    handle->title = title;
    handle->entryIndex = -1;
    handles.push_back(std::move(handle));
    return handles.back().get();
}

Handle* handleOf(HostStream* stream, const char* operation) {
    FakeHost& host = FakeHost::current();
    for (const auto& handle : host.parts().handles) {
        if (&handle->record.stream != stream) {
            continue;
        }
        if (!handle->isOpen) {
            host.misuse(std::string(operation) + " on a closed handle: " + handle->title);
            return nullptr;
        }
        return handle.get();
    }
    host.misuse(std::string(operation) + " on something that is not a handle");
    return nullptr;
}

} // namespace fakehost
