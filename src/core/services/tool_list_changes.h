// Tells the listeners of the core that the list of tools changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace MVR {

class CoreServices;
struct UndoParts;

/// Gathers the changes of the tree of tools, so that one message CoreTools::kListChanged tells of
/// all that belong together. One for each attachment. Host thread only.
///
/// - An operation opens a Scope; the message comes at the end of the outermost one in which
///   something changed.
/// - The objects that it leaves in the host's undo list each hold an UndoPart of the outermost
///   scope in which they were made. The host undoes and redoes all of them, one by one; the message
///   comes with the last. This doesn't apply inside that scope itself, where the host cancels the
///   step of a failed operation.
class ToolListChanges {
public:
    class Scope {
    public:
        explicit Scope(ToolListChanges& changes) : changes_(changes) { ++changes_.depth_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { changes_.leave(); }

    private:
        ToolListChanges& changes_;
    };

    class UndoPart {
    public:
        explicit UndoPart(ToolListChanges& changes);
        UndoPart(const UndoPart&) = delete;
        UndoPart& operator=(const UndoPart&) = delete;
        ~UndoPart();
        /// Called when the object was undone or redone.
        void finish();

    private:
        std::shared_ptr<UndoParts> parts_;
        std::uint32_t lastPass_ = 0;
    };

    explicit ToolListChanges(CoreServices& services) : services_(services) {}
    ToolListChanges(const ToolListChanges&) = delete;
    ToolListChanges& operator=(const ToolListChanges&) = delete;

    /// Called when the list changed.
    void note();
    /// Returns a number that grows with each change, also with those that no message has told of
    /// yet.
    [[nodiscard]] std::uint64_t getRevision() const { return revision_; }
    /// The attachment ends: no more messages are sent.
    void silence() { isSilent_ = true; }

private:
    friend struct UndoParts;

    void leave();
    void tell();

    CoreServices& services_;
    std::uint64_t revision_ = 0;
    std::int32_t depth_ = 0;
    bool isChanged_ = false;
    bool isSilent_ = false;
    std::shared_ptr<UndoParts> parts_; // of the outermost scope; null until it has one
};

} // namespace MVR
