// Files of several directories, and files that are not what they say.

#include <gtest/gtest.h>

#include <random>

#include "base/cancelled.h"
#include "platform/image/tiff_reader_fixture.h"

namespace vantrel {
namespace {

TEST_F(TiffReader, PagesAreCounted) {
  const TiffSpec page = patterned(8, 3, PHOTOMETRIC_RGB);
  testing::saveTiff(path(), {page, page, page});
  EXPECT_EQ(open()->imageCount({}), 3);
}

TEST_F(TiffReader, ReducedCopiesAndMasksAreNoPictures) {
  const TiffSpec page = patterned(8, 3, PHOTOMETRIC_RGB);
  TiffSpec reduced = page;
  reduced.width = 2;
  reduced.subfileType = FILETYPE_REDUCEDIMAGE;
  TiffSpec mask = patterned(1, 1, PHOTOMETRIC_MASK);
  mask.subfileType = FILETYPE_MASK;
  TiffSpec pageOfMany = page;
  pageOfMany.subfileType = FILETYPE_PAGE;

  testing::saveTiff(path(), {pageOfMany, reduced, mask});
  EXPECT_EQ(open()->imageCount({}), 1);
  testing::saveTiff(path(), {reduced, page, reduced});
  EXPECT_EQ(open()->imageCount({}), 1);
  EXPECT_EQ(decode().width(), 5);
  testing::saveTiff(path(), {pageOfMany, reduced, pageOfMany});
  EXPECT_EQ(open()->imageCount({}), 2);
}

TEST_F(TiffReader, PictureThatCallsItselfReducedIsOneAllTheSame) {
  TiffSpec reduced = patterned(8, 3, PHOTOMETRIC_RGB);
  reduced.subfileType = FILETYPE_REDUCEDIMAGE;
  testing::saveTiff(path(), {reduced});
  EXPECT_EQ(open()->imageCount({}), 1);
  expectPattern<uint8_t>(decode(), reduced);
}

uint32_t numberAt(const testing::Bytes& file, size_t position) {
  return file[position] | file[position + 1] << 8 | file[position + 2] << 16;
}

/// Position of the field that holds the offset of the directory after the first one.
size_t nextDirectoryField(const testing::Bytes& file) {
  const size_t directory = numberAt(file, 4);
  return directory + 2 + (numberAt(file, directory) & 0xFFFF) * 12;
}

/// Replaces an entry of the first directory of a little-endian file.
void patchEntry(testing::Bytes& file, int tag, int newTag, int type, uint32_t value) {
  for (size_t entry = numberAt(file, 4) + 2; entry < nextDirectoryField(file); entry += 12) {
    if (static_cast<int>(numberAt(file, entry) & 0xFFFF) != tag) continue;
    file[entry] = static_cast<uint8_t>(newTag);
    file[entry + 1] = static_cast<uint8_t>(newTag >> 8);
    file[entry + 2] = static_cast<uint8_t>(type);
    for (size_t i = 0; i < 4; ++i) {
      file[entry + 8 + i] = static_cast<uint8_t>(value >> 8 * i);
    }
    return;
  }
  FAIL() << "no tag " << tag;
}

TEST_F(TiffReader, OlderTagOfReducedCopiesIsKnown) {
  TiffSpec reduced = patterned(8, 3, PHOTOMETRIC_RGB);
  reduced.width = 2;
  reduced.subfileType = FILETYPE_REDUCEDIMAGE;
  testing::saveTiff(path(), {reduced, patterned(8, 3, PHOTOMETRIC_RGB)});
  testing::Bytes file = testing::loadBytes(path());
  patchEntry(file, TIFFTAG_SUBFILETYPE, TIFFTAG_OSUBFILETYPE, TIFF_SHORT, OFILETYPE_REDUCEDIMAGE);
  testing::saveBytes(path(), file);
  EXPECT_EQ(open()->imageCount({}), 1);
  EXPECT_EQ(decode().width(), 5);
}

TEST_F(TiffReader, LoopOfDirectoriesEnds) {
  testing::saveTiff(path(), {patterned(8, 3, PHOTOMETRIC_RGB)});
  testing::Bytes file = testing::loadBytes(path());
  const size_t next = nextDirectoryField(file);
  std::copy_n(file.begin() + 4, 4, file.begin() + static_cast<std::ptrdiff_t>(next));
  testing::saveBytes(path(), file);
  EXPECT_EQ(open()->imageCount({}), 1);
  EXPECT_EQ(decode().width(), 5);
}

TEST_F(TiffReader, DirectoryThatCannotBeReadIsADamagedPicture) {
  for (const char* mode : {"wl", "wb", "w8l", "w8b"}) {
    testing::saveTiff(path(), {patterned(8, 3, PHOTOMETRIC_RGB)}, mode);
    std::filesystem::resize_file(path(), std::filesystem::file_size(path()) - 100);
    EXPECT_EQ(open()->imageCount({}), 1);
    EXPECT_THROW(decode(), ImageDamaged);
  }
}

TEST_F(TiffReader, FileWithoutDirectoriesHasNoPicture) {
  for (const bool big : {false, true}) {
    testing::Bytes file(100);
    const uint8_t start[] = {'I', 'I', static_cast<uint8_t>(big ? 43 : 42), 0,
                             static_cast<uint8_t>(big ? 8 : 0)};
    std::copy(std::begin(start), std::end(start), file.begin());
    testing::saveBytes(path(), file);
    EXPECT_EQ(open()->imageCount({}), 0);
    EXPECT_THROW(decode(), ImageDamaged);
  }
}

TEST_F(TiffReader, CutDataIsDamage) {
  for (const int compression :
       {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS}) {
    TiffSpec spec = patterned(8, 3, PHOTOMETRIC_RGB);
    spec.width = spec.height = 64;
    spec.compression = compression;
    testing::saveTiff(path(), {spec});
    testing::Bytes file = testing::loadBytes(path());
    // libtiff writes directories last: instead of the file's end, that of the strip is cut off.
    patchEntry(file, TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPOFFSETS, TIFF_LONG,
               static_cast<uint32_t>(file.size()) - 200);
    testing::saveBytes(path(), file);
    EXPECT_THROW(decode(), ImageDamaged) << compression;
  }
}

TEST_F(TiffReader, SizeOverTheLimitIsRefusedBeforeMemoryIsTaken) {
  testing::saveTiff(path(), {patterned(8, 3, PHOTOMETRIC_RGB)});
  testing::Bytes file = testing::loadBytes(path());
  patchEntry(file, TIFFTAG_IMAGEWIDTH, TIFFTAG_IMAGEWIDTH, TIFF_LONG, 65536);
  patchEntry(file, TIFFTAG_IMAGELENGTH, TIFFTAG_IMAGELENGTH, TIFF_LONG, 65536);
  testing::saveBytes(path(), file);
  EXPECT_THROW(decode(), ImageDamaged);
}

TEST_F(TiffReader, TileFarLargerThanThePictureIsRefused) {
  TiffSpec spec = patterned(8, 3, PHOTOMETRIC_RGB);
  spec.tileSide = 16;
  testing::saveTiff(path(), {spec});
  testing::Bytes file = testing::loadBytes(path());
  patchEntry(file, TIFFTAG_TILEWIDTH, TIFFTAG_TILEWIDTH, TIFF_LONG, 32768);
  patchEntry(file, TIFFTAG_TILELENGTH, TIFFTAG_TILELENGTH, TIFF_LONG, 32768);
  testing::saveBytes(path(), file);
  EXPECT_THROW(decode(), ImageDamaged);
}

TEST_F(TiffReader, StopIsHeeded) {
  testing::saveTiff(path(), {patterned(8, 3, PHOTOMETRIC_RGB)});
  std::stop_source source;
  source.request_stop();
  EXPECT_THROW((void)open()->imageCount(source.get_token()), Cancelled);
  EXPECT_THROW(open()->decode(source.get_token()), Cancelled);
}

/// Small files of each way of reading.
std::vector<TiffSpec> hostileSeeds() {
  std::vector<TiffSpec> specs;
  for (const int compression :
       {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS}) {
    TiffSpec spec = patterned(8, 4, PHOTOMETRIC_RGB);
    spec.extraSamples = {EXTRASAMPLE_ASSOCALPHA};
    spec.compression = compression;
    spec.separatePlanes = compression == COMPRESSION_LZW;
    spec.tileSide = compression == COMPRESSION_ADOBE_DEFLATE ? 16 : 0;
    specs.push_back(spec);
  }
  TiffSpec fax = patterned(1, 1, PHOTOMETRIC_MINISWHITE);
  fax.compression = COMPRESSION_CCITTFAX4;
  specs.push_back(fax);
  TiffSpec jpeg = patterned(8, 3, PHOTOMETRIC_YCBCR);
  jpeg.compression = COMPRESSION_JPEG;
  jpeg.jpegFromRgb = true;
  specs.push_back(jpeg);
  TiffSpec palette = patterned(4, 1, PHOTOMETRIC_PALETTE);
  fillColorMap(palette, [](uint32_t i) { return static_cast<uint16_t>(i * 257); });
  specs.push_back(palette);
  return specs;
}

/// A damaged file may give a picture or the one error, nothing else.
void readWhatMayBeDamaged(const std::filesystem::path& path) {
  const std::unique_ptr<ImageReader> reader = ImageReader::open(path);
  if (!reader) return;
  EXPECT_GE(reader->imageCount({}), 0);
  try {
    const Bitmap bitmap = reader->decode({});
    EXPECT_FALSE(bitmap.isEmpty());
  } catch (const ImageDamaged&) {
  }
}

TEST_F(TiffReader, TruncatedFilesDoNoHarm) {
  for (const TiffSpec& spec : hostileSeeds()) {
    testing::saveTiff(path(), {spec});
    for (uintmax_t size = std::filesystem::file_size(path()) - 1; size > 0; --size) {
      std::filesystem::resize_file(path(), size);
      readWhatMayBeDamaged(path());
    }
  }
}

TEST_F(TiffReader, FlippedBitsDoNoHarm) {
  std::mt19937 random(20261120);
  for (const TiffSpec& spec : hostileSeeds()) {
    testing::saveTiff(path(), {spec});
    const testing::Bytes whole = testing::loadBytes(path());
    for (int round = 0; round < 400; ++round) {
      const uint32_t flips = random() % 4 + 1;
      testing::saveBytes(path(), testing::withFlippedBits(whole, flips, random));
      readWhatMayBeDamaged(path());
    }
  }
}

}  // namespace
}  // namespace vantrel
