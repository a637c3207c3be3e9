// Where painted rows go: conversion to the destination's format, through a table or
// without, and the walk over it.
#pragma once

#include <cstddef>
#include <memory>

/// Takes the finished rows of a painting, in the source's format. One virtual call a row, none a pixel.
template <class Source>
class RowSink {
 public:
  virtual ~RowSink() = default;
  /// Stores row `row`, or keeps it to be stored with later ones. Takes each row of the walk once, from 0 on
  /// in turn; after the last one all are stored. `values` has as many pixels as the walk has columns.
  virtual void Store(int row, const Source* values) const = 0;
};

/// The pixels to be stored, as distances in pixels.
struct DestinationWalk {
  std::ptrdiff_t start;       ///< from the destination's first pixel to the first stored one
  std::ptrdiff_t stepX;       ///< from a stored pixel to the next of its row
  std::ptrdiff_t rowAdvance;  ///< from a row's first pixel to the next row's
  int columns;
  int rows;
};

/// Makes the sink that stores into `destination` along `walk`.
/// table  null, or one entry for every value of the source (65536 for 16-bit grey, else 256): 16 bits wide
///        for a 16-bit destination, else bytes. It maps colour by component into colour, else its grey
///        (R + 2G + B) >> 2; grey into colour goes to all three components. Without a table the value itself
///        goes the same ways, its low 8 bits into colour.
///
/// Quirk no-table-keeps-source-pixels: 16-bit grey or colour into 8-bit grey without a table is stored in the
/// source's pixel size, the steps of the walk counting such pixels (the start still counts the
/// destination's). The destination then needs room for its number of pixels in that size; what a backward
/// walk would store before it is left out.
///
/// Columns of the destination (steps other than 1 and -1) are filled some rows at a time, which the sink
/// collects; the rows must then be one pixel apart.
///
/// The sink keeps pointers to the destination and the table. May throw std::bad_alloc.
template <class Source, class Destination>
std::unique_ptr<RowSink<Source>> MakeRowSink(Destination* destination, const DestinationWalk& walk,
                                             const void* table);
