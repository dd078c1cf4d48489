#include "host/check/FileCheck.h"

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/MessageChecker.h"

namespace olmhost {

namespace {

void fill(CheckResult& result, const CompoundCounts& counts) {
    result.sectors = counts.sectors;
    result.freeSectors = counts.freeSectors;
    result.storages = counts.storages;
    result.streams = counts.streams;
}

void fill(CheckResult& result, const MessageCounts& counts) {
    result.embeddedMessages = counts.embeddedMessages;
    result.recipients = counts.recipients;
    result.attachments = counts.attachments;
    result.properties = counts.properties;
    result.namedProperties = counts.namedProperties;
}

void checkParts(RandomAccess& file, const CheckOptions& options, FindingList& findings,
                CheckResult& result) {
    CompoundChecker compound(file, findings);
    const bool hasDirectory = compound.check();
    fill(result, compound.counts());
    if (hasDirectory && options.kind == FileKind::Message) {
        MessageChecker message(compound, findings);
        message.check();
        fill(result, message.counts());
    }
}

} // namespace

CheckResult checkFile(RandomAccess& file, const CheckOptions& options) {
    CheckResult result;
    result.fileSize = file.size();
    FindingList findings(options.maxFindings);
    try {
        checkParts(file, options, findings, result);
    } catch (const ReadFailure& failure) {
        result.errorNumber = failure.errorNumber;
    }
    result.findings = findings.take();
    result.errors = findings.count(Severity::Error);
    result.warnings = findings.count(Severity::Warning);
    result.advice = findings.count(Severity::Advice);
    return result;
}

CheckResult checkFile(const std::string& path, const CheckOptions& options) {
    FileAccess file;
    if (const int failure = file.open(path)) {
        CheckResult result;
        result.errorNumber = failure;
        return result;
    }
    return checkFile(file, options);
}

} // namespace olmhost
