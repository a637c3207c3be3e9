# Writes the reports of the gallery: awk -v out=FOLDER -f cells.awk kinds.txt
#
# For each kind the folder FOLDER/KIND gets a report for each of the eight orientations on dark and on light ground,
# reports that are wrong on purpose, and a file "cells" that says what is to be seen:
#   cell REPORT INPUT X Y W H    the picture of REPORT.txt over INPUT lies at (X, Y) of the sheet KIND.png, W x H pixels
#   text L T R B                 glyphs of the cell above lie in this box of it; right and lower bounds are outside
#   wrong REPORT CELL HOW        the picture of REPORT.txt must not pass for that of CELL: HOW is "exactly" when it
#                                differs only in a text that is moved or a little different, else "always"
#
# Fails when a text would be cut by the picture's edge or run into another one.

function fail(message) {
  print "cells.awk: " kind ": " message >"/dev/stderr"
  failed = 1
  exit 1
}

function truncated(value) { return int(value) }
function low(a, b) { return a < b ? a : b }
function high(a, b) { return a > b ? a : b }

# Where (x, y) of the picture lies when it is turned to orientation o, before zoom and offset: the table in
# docs/formats.md.
function turnedX(o, x, y) { return o == 0 || o == 6 ? x : o == 2 || o == 4 ? W - x : o == 3 || o == 7 ? y : H - y }
function turnedY(o, x, y) { return o == 0 || o == 4 ? y : o == 2 || o == 6 ? H - y : o == 1 || o == 7 ? x : W - x }
function displayX(x, y) { return truncated(turnedX(orientation, x, y) * zoom) + offsetX }
function displayY(x, y) { return truncated(turnedY(orientation, x, y) * zoom) + offsetY }

function urlLength(word) {
  gsub(/%[0-9a-f][0-9a-f]/, "x", word)
  return length(word)
}

# A text of n characters whose baseline begins at (left, baseline).
function text(n, left, baseline,    t, i) {
  t = ++texts
  textL[t] = left
  textT[t] = baseline - 9
  textR[t] = left + 7 * n + 1
  textB[t] = baseline + 3
  if (textL[t] < 0 || textT[t] < 0 || textR[t] > width || textB[t] > height)
    fail(cell ": a text is cut: " textL[t] " " textT[t] " " textR[t] " " textB[t])
  for (i = 1; i < t; ++i)
    if (textL[i] < textR[t] && textL[t] < textR[i] && textT[i] < textB[t] && textT[t] < textB[i])
      fail(cell ": two texts meet at " textL[t] " " textT[t])
  print "text", high(textL[t] - 1, 0), high(textT[t] - 1, 0),
        low(textR[t] + 1, width), low(textB[t] + 2, height) >list
}

function centredText(n, x, y) { text(n, x - truncated(7 * n / 2), y + 5) }
function label(n, x, y) { centredText(n, displayX(x, y), displayY(x, y)) }

# Which word of an annotation line is its value; the word f is the '|'. 0: none stands at the value point.
function valueWord(f) {
  if (word[1] == "angle_x") return f + 5
  if (word[1] == "cobangle_x") return f + 7
  if (word[1] == "free_x") return f + 2 + 2 * word[f + 1]
  if (word[1] ~ /^(ruler|oval|houns|obm_.*)_x$/) return f + 3
  return 0
}

function pointerLabel(tipX, tipY, tailX, tailY, n) {
  if (displayX(tailX, tailY) > displayX(tipX, tipY))
    text(n, displayX(tailX, tailY) + 4, displayY(tailX, tailY) + 5)
  else
    text(n, displayX(tailX, tailY) - 4 - 7 * n, displayY(tailX, tailY) + 5)
}

function textsOf(line,    f, x, y, n) {
  f = 1
  split(line, word, " ")
  while (f in word && word[f] != "|") ++f
  if (word[1] == "calib_x") return
  if (word[6]) label(length(word[2]), word[8], word[9])
  if (valueWord(f) && word[7]) label(urlLength(word[valueWord(f)]), word[10], word[11])
  x = word[4]
  y = word[5]
  if (word[1] == "freepointer_x") pointerLabel(x, y, word[f + 1], word[f + 2], urlLength(word[f + 3]))
  if (word[1] == "pointer_x") {
    if (word[f + 1] != 7 || word[f + 2] != 4) fail("only the pointer 7 4 is worked out here")
    pointerLabel(x, y, x - 21, y + 21, urlLength(word[f + 3]))
  }
  if (word[1] == "spinelabel_x") label(urlLength(word[f + 5]), x, y)
  if (word[1] == "text_x") {
    n = urlLength(word[f + 2])
    text(n, displayX(x, y) - (turnedX(orientation, 1, 1) == turnedX(orientation, 0, 0) + 1 ? 0 : 7 * n),
         displayY(x, y) + (turnedY(orientation, 1, 1) == turnedY(orientation, 0, 0) + 1 ? 9 : 0))
  }
}

# The four letters, in the middles of the sides of what is seen of the picture.
function letters(    left, top, right, bottom, x, y) {
  left = offsetX < 0 ? 0 : offsetX
  top = offsetY < 0 ? 0 : offsetY
  right = low(width, offsetX + sizedX)
  bottom = low(height, offsetY + sizedY)
  if (split(roi, word, " ")) {
    left = low(displayX(word[3], word[4]), displayX(word[5], word[6]))
    right = displayX(word[3], word[4]) + displayX(word[5], word[6]) - left
    top = low(displayY(word[3], word[4]), displayY(word[5], word[6]))
    bottom = displayY(word[3], word[4]) + displayY(word[5], word[6]) - top
  }
  x = truncated((left + right) / 2)
  y = truncated((top + bottom) / 2)
  centredText(lengthOn(0), low(right - 10, width - 11), y)
  centredText(lengthOn(1), left < 0 ? 10 : left + 10, y)
  centredText(lengthOn(2), x, low(bottom - 10, height - 11))
  centredText(lengthOn(3), x, top + 10)
}

# How long the code at an edge is (0 right, 1 left, 2 bottom, 3 top): that of the rows at the sides, or above and below
# when they are turned.
function lengthOn(edge) { return length((orientation % 2 == 0) == (edge < 2) ? row : column) }

function writeReport(file, lines) {
  print "sized", sizedX, sizedY, 0, orientation >file
  print "clip", zoom, offsetX, offsetY, width, height >file
  print "pixel", spacing, spacing >file
  print "light", window, level, inverted, 0 >file
  if (lines !~ /^patient_orientation/) print "patient_orientation", 1, row, column >file
  printf "%s", lines >file
  close(file)
}

# The line with one of its numbers larger by what makes one pixel of the display.
function moved(line, f) {
  split(line, word, " ")
  return with(line, f, word[f] + truncated(1 / zoom + 0.5))
}

function with(line, f, value,    n, i, result) {
  n = split(line, word, " ")
  word[f] = value
  result = word[1]
  for (i = 2; i <= n; ++i) result = result " " word[i]
  return result "\n"
}

function wrong(how, name, lines) {
  writeReport(folder name ".txt", lines)
  print "wrong", name, cell, how >list
}

function wrongReports(    f) {
  if (kind == "patient_orientation") return wrong("exactly", "other_letter", "patient_orientation 1 R HP\n")
  if (kind == "roi") return wrong("always", "edge_moved", moved(line1, 3))
  if (kind == "calib_x") return wrong("always", "drawn", "ruler_x" substr(line1, length("calib_x") + 1) "\n")
  f = split(line1, word, "|")
  f = split(word[1], word, " ") + 1
  wrong(kind ~ /^(text|spinelabel)_x$/ ? "exactly" : "always", "point_moved",
        moved(line1, kind == "free_x" ? f + 2 : 4))
  wrong("exactly", "index_moved", moved(line1, 8))
  wrong("always", "index_missing", with(line1, 6, 0))
  split(line1, word, " ")
  if (valueWord(f)) wrong("exactly", "value_moved", moved(line1, 10))
}

function writeCell(ground,    i, n, parts) {
  inverted = ground == "light" ? 1 - darkInverted : darkInverted
  cell = orientation "_" ground
  print "cell", cell, "samples/" picture ".ei4", 8 + 208 * truncated(orientation / 2) + (200 - width) / 2,
        24 + (ground == "light" ? 398 : 0) + (orientation % 2 ? 174 : 0), width, height >list
  writeReport(folder cell ".txt", report)
  texts = 0
  letters()
  n = split(report, parts, "\n")
  for (i = 1; i < n; ++i) if (parts[i] ~ /_x /) textsOf(parts[i])
  if (cell == "0_dark") wrongReports()
}

function writeKind() {
  if (kind == "") return
  if (kind == "patient_orientation") { split(line1, word, " "); row = word[3]; column = word[4] }
  roi = kind == "roi" ? line1 : ""
  folder = out "/" kind "/"
  list = folder "cells"
  system("mkdir -p '" folder "'")
  for (orientation = 0; orientation < 8; ++orientation) {
    width = orientation % 2 ? 150 : 200
    height = 350 - width
    sizedX = truncated((orientation % 2 ? H : W) * zoom)
    sizedY = truncated((orientation % 2 ? W : H) * zoom)
    right = x + 200 / zoom
    bottom = y + 150 / zoom
    offsetX = truncated(-zoom * low(turnedX(orientation, x, y), turnedX(orientation, right, bottom)))
    offsetY = truncated(-zoom * low(turnedY(orientation, x, y), turnedY(orientation, right, bottom)))
    writeCell("dark")
    writeCell("light")
  }
  close(list)
  kind = ""
}

/^#/ { next }
$1 == "picture" { widths[$2] = $3; heights[$2] = $4; spacings[$2] = $5; rows[$2] = $6; columns[$2] = $7; next }
$1 == "kind" {
  kind = $2
  picture = $3
  zoom = $4
  x = $5
  y = $6
  window = $7
  level = $8
  darkInverted = $9
  W = widths[picture]
  H = heights[picture]
  spacing = spacings[picture]
  row = rows[picture]
  column = columns[picture]
  report = line1 = ""
  next
}
NF { report = report $0 "\n"; if (line1 == "") line1 = $0; next }
{ writeKind() }
END { if (!failed) writeKind() }
