#pragma once

#include <FreeImage.h>

// Handles of the image library that are given back on every way out of a function, exceptions
// included. Each holds one handle or null, and hands it over by Release.

class free_image_bitmap
{
public:
    explicit free_image_bitmap(FIBITMAP *Bitmap = nullptr) : Bitmap(Bitmap) {}
    free_image_bitmap(const free_image_bitmap &) = delete;
    free_image_bitmap &operator=(const free_image_bitmap &) = delete;
    ~free_image_bitmap() { Reset(nullptr); }

    FIBITMAP *Get() const { return Bitmap; }
    void Reset(FIBITMAP *NewBitmap)
    {
        if (Bitmap != nullptr)
            FreeImage_Unload(Bitmap);
        Bitmap = NewBitmap;
    }

private:
    FIBITMAP *Bitmap;
};

class free_image_memory
{
public:
    explicit free_image_memory(FIMEMORY *Memory) : Memory(Memory) {}
    free_image_memory(const free_image_memory &) = delete;
    free_image_memory &operator=(const free_image_memory &) = delete;
    ~free_image_memory()
    {
        if (Memory != nullptr)
            FreeImage_CloseMemory(Memory);
    }

    FIMEMORY *Get() const { return Memory; }

private:
    FIMEMORY *Memory;
};

// Declared before the memory it reads from, so that it is closed first.
class free_image_multi_bitmap
{
public:
    explicit free_image_multi_bitmap(FIMULTIBITMAP *MultiBitmap) : MultiBitmap(MultiBitmap) {}
    free_image_multi_bitmap(const free_image_multi_bitmap &) = delete;
    free_image_multi_bitmap &operator=(const free_image_multi_bitmap &) = delete;
    ~free_image_multi_bitmap()
    {
        if (MultiBitmap != nullptr)
            FreeImage_CloseMultiBitmap(MultiBitmap, 0);
    }

    FIMULTIBITMAP *Get() const { return MultiBitmap; }

private:
    FIMULTIBITMAP *MultiBitmap;
};

// A page taken from a multi-page bitmap, given back unchanged.
class free_image_locked_page
{
public:
    free_image_locked_page(FIMULTIBITMAP *MultiBitmap, int Page)
        : MultiBitmap(MultiBitmap), Bitmap(FreeImage_LockPage(MultiBitmap, Page))
    {
    }
    free_image_locked_page(const free_image_locked_page &) = delete;
    free_image_locked_page &operator=(const free_image_locked_page &) = delete;
    ~free_image_locked_page()
    {
        if (Bitmap != nullptr)
            FreeImage_UnlockPage(MultiBitmap, Bitmap, FALSE);
    }

    FIBITMAP *Get() const { return Bitmap; }

private:
    FIMULTIBITMAP *MultiBitmap;
    FIBITMAP *Bitmap;
};
