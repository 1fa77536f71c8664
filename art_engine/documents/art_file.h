#pragma once

#include <cstdint>

#include "art_engine/images/art_bitmap_manager.h"
#include "art_engine/objects/art_object.h"
#include "xbd/xbd.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The format version that this engine writes into every document, and the newest that it reads in full.
constexpr const char *ArtEngineVersion = "0.0.2";
// The title of the warning that a document of a newer minor version gets when it loads.
constexpr const char *ArtFileLoadWarningTitle = "Rofa Load Inconsistency Warning";

// The root object of one document: a frame in whole units, the document's bitmaps and the format
// version that the document was read with. Its tag, "art_file", is the one tag under a file's root;
// its children are the objects of the document, and its layout's w_val and h_val are the canvas.
class art_file : public art_object
{
public:
    // An empty document, with its rectangle shape. With SharedBitmaps unset it owns a manager of its own.
    explicit art_file(reference_pointer<art_bitmap_manager> SharedBitmaps = reference_pointer<art_bitmap_manager>());
    // Reads the "art_file" tag. A major version above 0 throws "Incompatible file version (VERSION)".
    art_file(reference_pointer<xbd_tag> Tag, reference_pointer<art_bitmap_manager> SharedBitmaps);
    // A deep copy of the objects that shares the other's bitmap manager and keeps its version: one
    // document's states then hold each picture once.
    art_file(const art_file &Other);
    ~art_file() override;

    ownership_pointer<art_object> Duplicate() const override;
    zel_string GetTagName() override;
    point2d GetMinimumSize() override;
    // Both round to whole units; under a frame lock neither does anything.
    void SetSize(point2d NewSize) override;
    void SetLocation(point2d NewLocation) override;
    // A document does not rotate.
    void SetAngle(double NewAngle) override;
    bool CanResizeContent() override;
    // art_engine_version, the children, the canvas, then the bitmaps in use: none of the attributes
    // of a plain object.
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    double GetCurrentTime() override;

    // Reads the fonts that the tag embeds into the font manager first, so that text finds them, then
    // the document, and lays it out once.
    static ownership_pointer<art_file> CreateArtFile(reference_pointer<xbd_tag> Tag,
                                                     reference_pointer<art_bitmap_manager> SharedBitmaps);
    // A new markup file whose root holds this document's tag. Objects marked for deletion are written
    // like any other: the caller deletes them first.
    ownership_pointer<xbd_file> CreateXBDFile();
    // Only the first two parts of the version count: a major part above 0 is never supported, and
    // with CheckMinor a minor part above 0 is not either.
    static bool IsSupportedVersion(const zel_string &Version, bool CheckMinor);

    // The document of a markup file, by the rules of every load: the root holds exactly one tag, a
    // server's "get_rofa_error" reply fails with the message it carries, and the tag must be
    // "art_file". Warning is emptied, or receives the text to show under ArtFileLoadWarningTitle when
    // the document comes from a newer minor version and may use what this engine does not know.
    static ownership_pointer<art_file> ReadDocument(xbd_file &File, reference_pointer<art_bitmap_manager> SharedBitmaps,
                                                    zel_string &Warning);

    reference_pointer<art_bitmap_manager> GetBitmapManager() const { return BitmapManager; }
    const zel_string &GetEngineVersion() const { return EngineVersion; }
    // A negative time gives the time of the tree above, or 0 without one.
    void SetCurrentTime(double Time) { CurrentTime = Time; }
    // While any lock is held, the frame stays as it is whatever asks to move or size it.
    void LockFrame() { FrameLock++; }
    void UnlockFrame() { FrameLock--; }
    bool IsFrameLocked() const { return FrameLock != 0; }

private:
    double CurrentTime;
    int32_t FrameLock;
    ownership_pointer<art_bitmap_manager> OwnedBitmapManager;
    reference_pointer<art_bitmap_manager> BitmapManager;
    zel_string EngineVersion;

    // What every construction does after the objects are read.
    void Initialize(reference_pointer<art_bitmap_manager> SharedBitmaps);
    bool HasStencilChild();
};
