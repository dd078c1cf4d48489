#ifndef OLMKIT_CLI_MANIFEST_RUNFILES_H
#define OLMKIT_CLI_MANIFEST_RUNFILES_H

#include <algorithm>
#include <array>
#include <string_view>

namespace olmkit {

// The files that a run keeps in its output folder besides the messages and attachments.
namespace runfile {

inline constexpr const char* manifest = "manifest.jsonl";
inline constexpr const char* manifestPart = "manifest.jsonl.part"; // lines of the current run
inline constexpr const char* manifestKept = "manifest.jsonl.kept"; // lines of the runs it resumes
inline constexpr const char* summary = "summary.json";
inline constexpr const char* unfinished = "unfinished.json"; // RunRecord of a run without an end
inline constexpr const char* shard = "shard.json";           // RunRecord of a complete shard

inline constexpr std::array<std::string_view, 6> all = {
    manifest, manifestPart, manifestKept, summary, unfinished, shard,
};

} // namespace runfile

// Whether `path`, relative to the output folder, is the name of one of those files.
inline bool isRunFile(std::string_view path) {
    return std::ranges::find(runfile::all, path) != runfile::all.end();
}

} // namespace olmkit

#endif
