#include "art_engine/documents/art_file.h"

#include <cmath>

#include "art_engine/documents/art_document_classes.h"
#include "art_engine/fonts/art_embedded_fonts.h"
#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_object_children.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "zel_basics/array.h"
#include "zel_basics/zel_error.h"

namespace {

// The first two parts of a version text, as decimal integers; a missing minor part reads as 0.
void GetMajorAndMinor(const zel_string &Version, int &Major, int &Minor)
{
    array<zel_string> Parts;
    Version.Split('.', Parts);
    Major = Parts[0].ToInt();
    Minor = Parts.GetNumberOfElements() >= 2 ? Parts[1].ToInt() : 0;
}

point2d RoundToWholeUnits(point2d Point)
{
    return point2d(std::round(Point.X), std::round(Point.Y));
}

// Objects are built, drawn and saved by recursion, a few calls of the stack for each level of the
// tree. A document nested deeper than this (a thousand objects inside one another, far beyond any
// real artwork) is refused before any of that starts, so that it cannot run the stack out.
constexpr int MaximumTagDepth = 2000;

void CheckNesting(reference_pointer<xbd_tag> Top)
{
    array<reference_pointer<xbd_tag>> Pending;
    array<int> Depths;
    Pending.Add(Top);
    Depths.Add(1);
    while (Pending.GetNumberOfElements() > 0) {
        reference_pointer<xbd_tag> Tag = Pending[Pending.GetNumberOfElements() - 1];
        int Depth = Depths[Depths.GetNumberOfElements() - 1];
        Pending.RemoveLast();
        Depths.RemoveLast();
        if (Depth > MaximumTagDepth)
            throw zel_error("Invalid Rofa File (tags nested more than " + zel_string::FromInt(MaximumTagDepth) +
                            " deep)");
        array<ownership_pointer<xbd_tag>> &Children = Tag->GetChildren();
        for (int I = 0; I < Children.GetNumberOfElements(); I++) {
            Pending.Add(reference_pointer<xbd_tag>(Children[I].Get()));
            Depths.Add(Depth + 1);
        }
    }
}

} // namespace

art_file::art_file(reference_pointer<art_bitmap_manager> SharedBitmaps)
    : CurrentTime(-1), FrameLock(0), EngineVersion("0.0.0")
{
    Initialize(SharedBitmaps);
}

art_file::art_file(reference_pointer<xbd_tag> Tag, reference_pointer<art_bitmap_manager> SharedBitmaps)
    : art_object(Tag), CurrentTime(-1), FrameLock(0)
{
    Initialize(SharedBitmaps);
    EngineVersion = Tag->GetAttribute("art_engine_version", "0.0.0");
    int Major = 0;
    int Minor = 0;
    GetMajorAndMinor(EngineVersion, Major, Minor);
    if (Major > 0)
        throw zel_error("Incompatible file version (" + EngineVersion + ")");
    reference_pointer<xbd_tag> BitmapsTag = Tag->GetChildTag("bitmaps");
    if (BitmapsTag.IsSet()) {
        OwnedBitmapManager.Reset(new art_bitmap_manager(BitmapsTag));
        BitmapManager = reference_pointer<art_bitmap_manager>(OwnedBitmapManager.Get());
        ReadBitmaps(BitmapManager);
    }
    // The shape added above moved the frame that the layout holds; the canvas is what the file says.
    GetLayout()->ReadAttributes(Tag);
}

art_file::art_file(const art_file &Other)
    : art_object(Other), CurrentTime(Other.CurrentTime), FrameLock(0), BitmapManager(Other.BitmapManager),
      EngineVersion(Other.EngineVersion)
{
}

art_file::~art_file() = default;

void art_file::Initialize(reference_pointer<art_bitmap_manager> SharedBitmaps)
{
    // Every document clips its content to its canvas, and the effects of its top level follow that shape.
    if (!HasStencilChild())
        SetShape(ownership_pointer<art_object>(new art_stencil_shape));
    if (SharedBitmaps.IsSet()) {
        BitmapManager = SharedBitmaps;
    } else {
        OwnedBitmapManager.Reset(new art_bitmap_manager);
        BitmapManager = reference_pointer<art_bitmap_manager>(OwnedBitmapManager.Get());
    }
}

bool art_file::HasStencilChild()
{
    for (array_iterator<ownership_pointer<art_object>> Child = GetChildren(); Child.NotDone(); Child.Next())
        if (IsStencilStackMode(Child.Current()->GetStackMode()))
            return true;
    return false;
}

ownership_pointer<art_object> art_file::Duplicate() const
{
    return ownership_pointer<art_object>(new art_file(*this));
}

zel_string art_file::GetTagName()
{
    return "art_file";
}

point2d art_file::GetMinimumSize()
{
    return point2d(16, 16);
}

void art_file::SetSize(point2d NewSize)
{
    if (FrameLock != 0)
        return;
    SetSizeInternal(RoundToWholeUnits(NewSize), false);
}

void art_file::SetLocation(point2d NewLocation)
{
    if (FrameLock != 0)
        return;
    SetLocationInternal(RoundToWholeUnits(NewLocation), false);
}

void art_file::SetAngle(double) {}

bool art_file::CanResizeContent()
{
    return false;
}

double art_file::GetCurrentTime()
{
    if (CurrentTime >= 0)
        return CurrentTime;
    return art_object::GetCurrentTime();
}

void art_file::WriteAttributes(reference_pointer<xbd_tag> Tag)
{
    Tag->AddAttribute("art_engine_version", ArtEngineVersion);
    BitmapManager->ClearUsage();
    UpdateBitmaps();
    // Made before anything else of the document, so that its name and its data take the lowest
    // numbers in the dictionaries, although the tag comes after the children.
    ownership_pointer<xbd_tag> BitmapsTag = Tag->NewTag("bitmaps");
    BitmapManager->SaveToTag(BitmapsTag);
    if (HasChildren())
        Children->WriteChildren(Tag);
    GetLayout()->WriteAttributes(Tag);
    if (BitmapsTag->GetChildren().GetNumberOfElements() > 0)
        Tag->AddChildTag(BitmapsTag);
    // The "embedded_fonts" tag comes last: used_font_glyphs writes it from the characters of the text
    // objects in the tree, which are the only objects that use fonts.
}

ownership_pointer<art_file> art_file::CreateArtFile(reference_pointer<xbd_tag> Tag,
                                                    reference_pointer<art_bitmap_manager> SharedBitmaps)
{
    ArtAddDocumentMakers();
    reference_pointer<xbd_tag> EmbeddedFonts = Tag->GetChildTag("embedded_fonts");
    if (EmbeddedFonts.IsSet())
        ReadEmbeddedFonts(*EmbeddedFonts);
    ownership_pointer<art_file> File(new art_file(Tag, SharedBitmaps));
    File->Layout();
    return File;
}

ownership_pointer<xbd_file> art_file::CreateXBDFile()
{
    ownership_pointer<xbd_file> File(new xbd_file);
    File->GetRootTag()->AddChildTag(CreateTag(reference_pointer<xbd_file>(File.Get())));
    return File;
}

bool art_file::IsSupportedVersion(const zel_string &Version, bool CheckMinor)
{
    int Major = 0;
    int Minor = 0;
    GetMajorAndMinor(Version, Major, Minor);
    return Major <= 0 && !(CheckMinor && Minor > 0);
}

ownership_pointer<art_file> art_file::ReadDocument(xbd_file &File, reference_pointer<art_bitmap_manager> SharedBitmaps,
                                                   zel_string &Warning)
{
    Warning = zel_string();
    array<ownership_pointer<xbd_tag>> &Tags = File.GetRootTag()->GetChildren();
    if (Tags.GetNumberOfElements() < 1)
        throw zel_error("Invalid Rofa File (contains no tags)");
    if (Tags.GetNumberOfElements() > 1)
        throw zel_error("Invalid Rofa File (contains too many tags)");
    reference_pointer<xbd_tag> Top(Tags[0].Get());
    // A server that cannot send the document sends this tag instead, with words for the person.
    zel_string TopName = Top->GetName();
    if (TopName == "get_rofa_error")
        throw zel_error(Top->GetAttribute("show_user", "Server didn't specify an error message."));
    if (TopName != "art_file")
        throw zel_error("Invalid Rofa File (root tag is not valid: " + TopName + ")");
    CheckNesting(Top);
    ownership_pointer<art_file> Document = CreateArtFile(Top, SharedBitmaps);
    if (!IsSupportedVersion(Document->GetEngineVersion(), true))
        Warning = "The Rofa loaded, but it was created with a newer version of\nthe editor. There may be some "
                  "inconsistancies because this\neditor doesn't support the newer features.\n\nRofa Format Version: " +
                  Document->GetEngineVersion() + "\nLatest Rofa-Format supported: " + ArtEngineVersion;
    return Document;
}
