// qel rotate, qel flip, qel resize: geometric transforms of grey and colour pictures
// (common/geometry.h).
#include "common/cli.h"
#include "common/geometry.h"
#include "common/image.h"

#include <string>
#include <vector>

namespace {

// ---- qel rotate ----------------------------------------------------------------------------------
int runRotate(const cli::Args& args) {
    args.expectPositional(2);
    if (!args.has("angle")) throw cli::UsageError("--angle DEG is needed (degrees, clockwise)");
    const double degrees = args.real("angle", 0.0);
    const bool aboutCentre = args.has("center");
    std::vector<int> centre;
    if (aboutCentre) centre = args.integers("center", 2);

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    const cli::Image picture = cli::loadImage(in);
    std::string what = "rotated " + cli::shortNumber(degrees) + " degrees";
    cli::Image rotated;
    if (aboutCentre) {
        bool filled = false;
        rotated = cli::rotateAbout(picture, degrees, centre[0], centre[1], &filled);
        what += " about " + std::to_string(centre[0]) + "," + std::to_string(centre[1]);
        if (filled) what += ", corners black";
    } else {
        rotated = cli::rotateImage(picture, degrees);
    }
    cli::saveAndConfirm(rotated, in, out, what);
    return 0;
}

const cli::Register rotateCommand({"rotate", "rotate a picture by any angle, whole or about a centre",
    "usage: qel rotate IN OUT --angle DEG [--center X,Y]\n"
    "\n"
    "Rotates a grey or colour picture by DEG degrees, clockwise as displayed (negative: counter-\n"
    "clockwise), and writes OUT (.png or .bmp) of the same kind.\n"
    "\n"
    "  --angle DEG     the angle in degrees, any finite number\n"
    "                  Without --center the whole picture is kept: OUT is the box of the rotated\n"
    "                  corners, black where no pixel lands. Whole multiples of 90 are exact quarter\n"
    "                  and half turns (90: W x H becomes H x W); other angles take the nearest\n"
    "                  pixel, with sines and cosines in 1024ths\n"
    "  --center X,Y    rotate about the pixel X,Y (inside the picture) instead: OUT has the size\n"
    "                  of IN, pixels are interpolated (bilinear) and what comes from outside the\n"
    "                  picture is black; the centre stays put to within half a pixel\n"
    "\n"
    "Pictures of more than 2^28 pixels are not made.\n"
    "\n"
    "Examples:\n"
    "  qel rotate photo.png turned.png --angle 90\n"
    "  qel rotate photo.png tilted.png --angle -12.5 --center 256,256\n",
    {"angle", "center"}, runRotate});

// ---- qel flip ------------------------------------------------------------------------------------
int runFlip(const cli::Args& args) {
    args.expectPositional(2);
    const std::string axis = args.oneOf({"horizontal", "vertical"});
    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    const cli::Image picture = cli::loadImage(in);
    const bool horizontal = axis == "horizontal";
    const cli::Image flipped = cli::flipImage(picture, horizontal ? cli::FlipAxis::Horizontal : cli::FlipAxis::Vertical);
    cli::saveAndConfirm(flipped, in, out, horizontal ? "flipped left to right" : "flipped top to bottom");
    return 0;
}

const cli::Register flipCommand({"flip", "mirror a picture left to right or top to bottom",
    "usage: qel flip IN OUT --horizontal|--vertical\n"
    "\n"
    "Mirrors a grey or colour picture and writes OUT (.png or .bmp) of the same size and kind.\n"
    "\n"
    "  --horizontal    left and right swapped: each row reversed\n"
    "  --vertical      top and bottom swapped: the rows in reverse order\n",
    {}, runFlip, {"horizontal", "vertical"}});

// ---- qel resize ----------------------------------------------------------------------------------

// "640x480" as a width and a height.
void parseSize(const std::string& text, int* width, int* height) {
    const size_t x = text.find_first_of("xX");
    const auto whole = [](const std::string& part, int* out) {
        if (part.empty() || part.size() > 9 || part.find_first_not_of("0123456789") != std::string::npos) return false;
        *out = std::stoi(part);
        return true;
    };
    if (x == std::string::npos || !whole(text.substr(0, x), width) || !whole(text.substr(x + 1), height))
        throw cli::UsageError("--size wants WIDTHxHEIGHT in pixels, such as 640x480, got '" + text + "'");
}

int runResize(const cli::Args& args) {
    args.expectPositional(2);
    const std::string how = args.oneOf({"size", "scale"});
    const cli::ResizeMethodInfo& method = cli::resizeMethodNamed(args.value("method", "bilinear"));
    int width = 0;
    int height = 0;
    double scale = 0.0;
    if (how == "size") {
        parseSize(args.value("size"), &width, &height);
        cli::checkNewSize(width, height, "the resized picture");
    } else {
        scale = args.real("scale", 0.0);
    }

    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];
    cli::checkOutputName(out);
    const cli::Image picture = cli::loadImage(in);
    if (how == "scale") cli::sizeForScale(picture, scale, method, &width, &height);
    const cli::Image resized = cli::resizeImage(picture, width, height, method);
    cli::saveAndConfirm(resized, in, out,
                        std::string("resized from ") + std::to_string(picture.width) + " x " +
                            std::to_string(picture.height) + " (" + method.name + ")");
    return 0;
}

const cli::Register resizeCommand({"resize", "resize a picture (bilinear, block average, pick or block median)",
    "usage: qel resize IN OUT --size WxH | --scale F [--method bilinear|average|pick|median]\n"
    "\n"
    "Resizes a picture and writes OUT (.png or .bmp) of the same kind (grey or colour).\n"
    "\n"
    "  --size WxH      the new size in pixels, such as 640x480\n"
    "  --scale F       the new size as a factor of the old, such as 0.5 or 2\n"
    "  --method M      how the pixels are made (default bilinear):\n"
    "    bilinear      interpolated between the four nearest pixels, corners onto corners, in\n"
    "                  16.16 fixed point; any size, larger or smaller; grey and colour\n"
    "    average       the mean of each block of pixels; shrinks only, by whole steps (N columns\n"
    "                  give N/1, N/2, N/3, ... columns, and --scale must be 1/k: 0.5, 0.333,\n"
    "                  0.25, ...); grey and colour\n"
    "    pick          the top-left pixel of each block; shrinks only, by whole steps as average;\n"
    "                  grey and colour\n"
    "    median        the median of each block; shrinks only, to any size whose blocks cover\n"
    "                  the picture; grey only\n"
    "  Columns and rows left over by whole steps (512 columns by step 3: the last 2) are dropped.\n"
    "\n"
    "Pictures of more than 2^28 pixels are not made.\n"
    "\n"
    "Examples:\n"
    "  qel resize photo.png small.png --scale 0.25 --method average\n"
    "  qel resize photo.png big.png --size 1024x768\n",
    {"size", "scale", "method"}, runResize});

}  // namespace
