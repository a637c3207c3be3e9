#include "report/expected_picture.h"

#include <fstream>
#include <functional>
#include <map>
#include <optional>

#include "report/canvas.h"
#include "report/figures.h"
#include "report/script.h"
#include "report/sources.h"

namespace ei4::test {

namespace {

Rgb rgb(const std::string& colour) {
  const int value = std::stoi(colour.substr(1), nullptr, 16);
  return {static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 8),
          static_cast<unsigned char>(value)};
}

// Braces keep the order of reading.
Point point(ScriptLine& line) { return {line.number(), line.number()}; }
Colours colours(ScriptLine& line) { return {line.colour(), line.colour()}; }
Box box(ScriptLine& line) { return {line.number(), line.number(), line.number(), line.number()}; }

std::vector<Point> points(ScriptLine& line) {
  std::vector<Point> all;
  while (!line.atEnd()) all.push_back(point(line));
  return all;
}

void show(ScriptLine& line, Canvas& canvas) {
  const std::string name = line.word();
  if (!sources().contains(name)) throw ScriptError("no source " + name);
  const int orientation = line.number();
  const Point corner = point(line);
  Shades shades;
  if (!line.atEnd()) {
    shades.low = line.number();
    shades.high = line.number();
  }
  if (!line.atEnd()) {
    if (line.word() != "inverted") throw ScriptError("only \"inverted\" may follow");
    shades.inverted = true;
  }
  canvas.show(sources().at(name), orientation, corner.x, corner.y, shades);
}

using CanvasVerb = std::function<void(ScriptLine&, Canvas&)>;
using DrawingVerb = std::function<void(ScriptLine&, Drawing&)>;

const std::map<std::string, CanvasVerb>& canvasVerbs() {
  static const std::map<std::string, CanvasVerb> verbs = {
      {"show", show},
      {"fill",
       [](ScriptLine& line, Canvas& canvas) {
         const Rgb colour = rgb(line.colour());
         canvas.fill(box(line), colour);
       }},
      {"only", [](ScriptLine& line, Canvas& canvas) { canvas.blackenOutside(box(line)); }},
  };
  return verbs;
}

template <auto Figure>
void figure(ScriptLine& line, Drawing& drawing) {
  const Colours pair = colours(line);
  const Point at = point(line);
  Figure(drawing, pair, at, line.text());
}

const std::map<std::string, DrawingVerb>& drawingVerbs() {
  static const std::map<std::string, DrawingVerb> verbs = {
      {"line",
       [](ScriptLine& line, Drawing& drawing) {
         const std::string colour = line.colour();
         const Point from = point(line);
         drawing.line(colour, from, point(line));
       }},
      {"text",
       [](ScriptLine& line, Drawing& drawing) {
         const std::string colour = line.colour();
         const Point at = point(line);
         drawing.text(colour, at, line.text());
       }},
      {"shadowline",
       [](ScriptLine& line, Drawing& drawing) {
         const Colours pair = colours(line);
         const Point from = point(line);
         shadowLine(drawing, pair, from, point(line));
       }},
      {"shadowellipse",
       [](ScriptLine& line, Drawing& drawing) {
         const Colours pair = colours(line);
         const Point centre = point(line);
         const Point radii = point(line);
         shadowEllipse(drawing, pair, centre, radii.x, radii.y);
       }},
      {"shadowpolygon",
       [](ScriptLine& line, Drawing& drawing) {
         const Colours pair = colours(line);
         shadowPolygon(drawing, pair, points(line));
       }},
      {"shadowtext", figure<shadowText>},
      {"label", figure<label>},
      {"roiframe", [](ScriptLine& line, Drawing& drawing) { roiFrame(drawing, box(line)); }},
  };
  return verbs;
}

// First the canvas, then, from the first figure on, what is drawn on it, then what the file format makes of
// it.
class Expectation {
 public:
  void obey(ScriptLine& line) {
    const std::string verb = line.word();
    if (verb == "picture") {
      const Point size = point(line);
      m_canvas.emplace(size.x, size.y);
    } else if (!m_canvas) {
      throw ScriptError("the picture's size comes first");
    } else if (verb == "jpeg") {
      m_quality = line.number();
    } else if (canvasVerbs().contains(verb)) {
      if (m_drawing) throw ScriptError("figures come last");
      canvasVerbs().at(verb)(line, *m_canvas);
    } else if (drawingVerbs().contains(verb)) {
      draw(drawingVerbs().at(verb), line);
    } else {
      throw ScriptError("what is " + verb + "?");
    }
    line.expectEnd();
  }

  Raster raster() {
    if (!m_canvas) throw ScriptError("no picture");
    start();
    return m_quality ? m_drawing->rasterInFile("JPEG", *m_quality) : m_drawing->rasterInFile("PNG", 0);
  }

 private:
  void start() {
    if (!m_drawing) m_drawing.emplace(*m_canvas);
  }

  void draw(const DrawingVerb& verb, ScriptLine& line) {
    start();
    const Raster before = m_drawing->raster();
    verb(line, *m_drawing);
    if (m_drawing->raster().bytes == before.bytes) throw ScriptError("nothing of this is to be seen");
  }

  std::optional<Canvas> m_canvas;
  std::optional<Drawing> m_drawing;
  std::optional<int> m_quality;
};

}  // namespace

Raster expectedPicture(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw ScriptError("no file " + path);
  Expectation expectation;
  int number = 0;
  for (std::string text; std::getline(file, text);) {
    ++number;
    try {
      ScriptLine line(text);
      if (!line.atEnd()) expectation.obey(line);
    } catch (const std::runtime_error& error) {
      throw ScriptError(path + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  return expectation.raster();
}

}  // namespace ei4::test
