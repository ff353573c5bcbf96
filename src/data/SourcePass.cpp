#include "data/SourcePass.h"

#include "data/SourceFile.h"
#include "loading/lines/ChunkLineReader.h"

#include <algorithm>
#include <limits>

namespace {

// Gives the lines of one archive member, or plain file, to the blocks that they may belong to.
class LineDispatch {
public:
    explicit LineDispatch(std::vector<BlockPoints *> blocks) : blocks_(std::move(blocks)) {
        std::sort(blocks_.begin(), blocks_.end(), [](const BlockPoints *a, const BlockPoints *b) {
            return a->linesBegin() < b->linesBegin();
        });
        next_ = blocks_.begin();
    }

    std::uint64_t firstOffset() const { return blocks_.front()->linesBegin(); }

    const std::vector<BlockPoints *> &blocks() const { return blocks_; }

    void run(ChunkLineReader &lines) {
        while (!active_.empty() || next_ != blocks_.end()) {
            if (active_.empty()) {
                lines.jumpTo((*next_)->linesBegin());
            }
            if (!lines.nextLine()) {
                return;
            }
            const std::uint64_t offset = lines.lineOffset() + lines.shortfall();
            if (offset >= nextChange_) {
                changeBlocksAt(offset);
            }
            std::erase_if(active_, [&](BlockPoints *block) { return !block->takeLine(lines.line()); });
        }
    }

private:
    void changeBlocksAt(std::uint64_t offset) {
        for (; next_ != blocks_.end() && (*next_)->linesBegin() <= offset; ++next_) {
            active_.push_back(*next_);
        }
        std::erase_if(active_, [&](const BlockPoints *block) { return block->linesEnd() <= offset; });
        nextChange_ =
            next_ == blocks_.end() ? std::numeric_limits<std::uint64_t>::max() : (*next_)->linesBegin();
        for (const BlockPoints *block : active_) {
            nextChange_ = std::min(nextChange_, block->linesEnd());
        }
    }

    std::vector<BlockPoints *> blocks_;         // by the offset of their first line
    std::vector<BlockPoints *>::iterator next_; // the first one whose lines have not come yet
    std::vector<BlockPoints *> active_;
    std::uint64_t nextChange_ = 0; // offset at which a block begins or ends
};

} // namespace

void SourcePass::add(BlockPoints &block) {
    const SourceMember &member = block.member();
    waiting_[{block.fragment().header().fileName, member.number, member.name}].push_back(&block);
}

void SourcePass::run() {
    while (!waiting_.empty()) {
        readFile(std::string(waiting_.begin()->first.fileName));
    }
}

void SourcePass::readFile(const std::string &fileName) {
    SourceFile file(fileName);
    while (!waiting_.empty() && waiting_.begin()->first.fileName == fileName) {
        auto node = waiting_.extract(waiting_.begin());
        LineDispatch dispatch(std::move(node.mapped()));
        const SourceHeader &source = dispatch.blocks().front()->fragment().header();
        complaints_.checkForChange(source);
        ChunkLineReader lines;
        if (file.open(lines, node.key().member, dispatch.firstOffset())) {
            dispatch.run(lines);
            addNextMembersOf(dispatch.blocks());
        }
        lines.close();
        complaints_.tell(source, lines.problem());
    }
}

void SourcePass::addNextMembersOf(const std::vector<BlockPoints *> &blocks) {
    for (BlockPoints *const block : blocks) {
        if (block->goToNextMember()) {
            add(*block);
        }
    }
}
