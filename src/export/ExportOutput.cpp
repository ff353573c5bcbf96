#include "export/ExportOutput.h"

#include <algorithm>
#include <utility>

ExportOutput::ExportOutput(std::unique_ptr<ExportSink> sink, ReportError reportError)
    : sink_(std::move(sink)), reportError_(std::move(reportError)) {}

ExportOutput::~ExportOutput() {
    close();
}

void ExportOutput::append(std::string_view bytes) {
    take(std::copy(bytes.begin(), bytes.end(), room(bytes.size())));
}

void ExportOutput::flush() {
    if (sink_ && size_ > 0) {
        note(sink_->write({block_.get(), size_}));
    }
    size_ = 0;
}

void ExportOutput::close() {
    flush();
    if (sink_) {
        note(sink_->close());
        sink_.reset();
    }
}

void ExportOutput::grow(std::size_t count) {
    // A block that is about to be handed on may hold one record more.
    capacity_ = std::max(blockSize + count, size_ + count);
    std::unique_ptr<char[]> grown(new char[capacity_]);
    std::copy_n(block_.get(), size_, grown.get());
    block_ = std::move(grown);
}

void ExportOutput::note(const std::error_code &error) {
    if (error) {
        sink_.reset();
        reportError_(error);
    }
}
