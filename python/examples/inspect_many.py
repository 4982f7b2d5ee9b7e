#!/usr/bin/env python3
"""Inspects every BMP picture of a directory on a Dask cluster: each worker reads a picture, turns
it grey, binarises it at Otsu's threshold, removes specks, lists the objects' outer contours,
measures them and writes an annotated copy with a JSON report. The summary table is printed here.

    inspect_many.py DIR [-o OUT] [--scheduler ADDRESS] [--workers N]
                        [--threshold T] [--dark] [--min-area A]

Without --scheduler a local cluster of N worker processes (default 2) is started on 127.0.0.1 and
shut down at the end; with it the pictures go to an existing cluster, whose workers must be able
to `import qel` and to write to OUT. For each picture NAME.bmp, OUT (default DIR/inspect) receives
NAME_inspect.bmp (boxes in red, centres and object numbers in green) and NAME.json; summary.json
lists every picture. The exit status is 1 when a picture could not be inspected, else 0.
"""

import argparse
import json
import os
import socket
import sys
import tempfile
import time

import numpy as np

import qel

# The tool's choices: objects at or above the threshold, specks of fewer than 2 object neighbours
# removed, outer boundaries of at least one step, boxes red and centres green.
SPECK_NEIGHBOURS = 2
OUTER_ONLY = 1
BOX_COLOUR = (255, 0, 0)
CENTRE_COLOUR = (0, 255, 0)
CROSS_HALF = 4
RESULT_SUFFIX = "_inspect"


def choose_threshold(hist):
    """Otsu's threshold, unless it would make every pixel object (the library leaves its brightest
    level out of Otsu's sums, so two-level pictures land on their darkest level): then the darkest
    level alone is background. A single level is object when it is 128 or brighter."""
    levels = np.flatnonzero(hist)
    darkest = int(levels[0])
    if len(levels) == 1:
        return (darkest, "one grey level") if darkest >= 128 else (darkest + 1, "one grey level")
    if len(levels) == 2:
        return int(levels[1]), "two grey levels"
    otsu = qel.histogram.get_otsu_threshold(hist)
    if otsu > darkest:
        return otsu, "Otsu"
    return int(levels[1]), "Otsu would make every pixel object"


def read_picture(path):
    """(colour, grey) of a 24-bit or 8-bit BMP file."""
    with open(path, "rb") as f:
        header = f.read(30)
    bits = int.from_bytes(header[28:30], "little") if len(header) == 30 else 0
    if bits == 8:
        grey = qel.io.read_8bit_bmp_file2img(path)
        return np.repeat(grey[..., None], 3, axis=2), grey
    colour = qel.io.read_24bit_bmp_file2img(path)
    return colour, qel.color.rgb2gry(colour)


def measure(grey, contour):
    """One object's record: area, perimeter, box, centre and the mean grey level it encloses."""
    x, y, chain = contour.x, contour.y, contour.chain
    left, right, top, bottom = qel.contour.contour_rect(x, y, chain)
    cx, cy = qel.contour.contour_center(x, y, chain)
    count, mask = qel.contour.paste_pixels2res_img(grey, x, y, chain, value=255)
    return {"area": contour.area, "perimeter": contour.perimeter, "left": left, "right": right, "top": top,
            "bottom": bottom, "centre_x": cx, "centre_y": cy,
            "mean_grey": round(float(grey[mask == 255].mean()), 2) if count else 0.0}


def annotate(colour, objects):
    for number, o in enumerate(objects, start=1):
        colour = qel.draw.draw_rgb_rect(colour, o["left"], o["right"], o["top"], o["bottom"], *BOX_COLOUR, out=colour)
        cx, cy = o["centre_x"], o["centre_y"]
        qel.draw.rgb_line(colour, cx - CROSS_HALF, cy, cx + CROSS_HALF, cy, *CENTRE_COLOUR, out=colour)
        qel.draw.rgb_line(colour, cx, cy - CROSS_HALF, cx, cy + CROSS_HALF, *CENTRE_COLOUR, out=colour)
        # The number beside the box's top right corner (the library skips it where it does not fit).
        qel.draw.set_number_string2rgb_img(colour, o["right"] + 2, o["top"], 0, 0, 255, 0, str(number), out=colour)
    return colour


def inspect_file(path, out_dir, threshold=None, dark=False, min_area=100):
    """Runs on a worker: inspects one picture, writes its annotated copy and JSON report, and
    returns its summary row. A picture that cannot be inspected gives a row with its error."""
    name = os.path.splitext(os.path.basename(path))[0]
    row = {"file": os.path.basename(path), "width": 0, "height": 0, "threshold": None, "objects": 0,
           "total_area": 0, "error": None, "worker": f"{socket.gethostname()}:{os.getpid()}"}
    started = time.perf_counter()
    try:
        colour, grey = read_picture(path)
        row["height"], row["width"] = grey.shape
        if threshold is None:
            level, reason = choose_threshold(qel.histogram.get_histogram(grey))
        else:
            level, reason = threshold, "given"
        binary = qel.histogram.threshold(grey, level)
        if dark:
            binary = 255 - binary
        binary = qel.binary.bin_img_delete_points_less_than_n(binary, 255, SPECK_NEIGHBOURS, out=binary)
        contours = qel.contour.get_contours(binary, min_length=1, min_area=min_area, mode=OUTER_ONLY)
        objects = [measure(grey, k) for k in contours]
        annotated = annotate(colour.copy(), objects)
        qel.io.write_24bit_img2bmp_file(annotated, os.path.join(out_dir, name + RESULT_SUFFIX + ".bmp"))
        report = {"file": row["file"], "width": row["width"], "height": row["height"], "threshold": level,
                  "threshold_reason": reason, "objects": objects}
        with open(os.path.join(out_dir, name + ".json"), "w") as f:
            json.dump(report, f, indent=1)
        row.update(threshold=level, objects=len(objects), total_area=sum(o["area"] for o in objects))
    except (OSError, ValueError) as e:
        row["error"] = str(e)
    row["seconds"] = round(time.perf_counter() - started, 4)
    return row


def pictures(directory):
    """The BMP files of the directory, by name, without the annotated copies of an earlier run."""
    names = sorted(n for n in os.listdir(directory)
                   if n.lower().endswith(".bmp") and not n[:-4].endswith(RESULT_SUFFIX))
    return [os.path.join(directory, n) for n in names]


def print_table(rows, out=sys.stdout):
    print(f"{'file':<24} {'size':>9} {'threshold':>9} {'objects':>7} {'total area':>10}  status", file=out)
    for r in rows:
        size = f"{r['width']}x{r['height']}"
        threshold = "-" if r["threshold"] is None else r["threshold"]
        status = "ok" if r["error"] is None else "error: " + r["error"]
        print(f"{r['file']:<24} {size:>9} {threshold:>9} {r['objects']:>7} {r['total_area']:>10}  {status}", file=out)
    failed = sum(r["error"] is not None for r in rows)
    print(f"{len(rows)} pictures, {sum(r['objects'] for r in rows)} objects, {failed} failed", file=out)


def parse_args(argv):
    p = argparse.ArgumentParser(description="Inspect every BMP picture of a directory on a Dask cluster.")
    p.add_argument("directory")
    p.add_argument("-o", "--output", help="directory for the results (default DIR/inspect)")
    p.add_argument("--scheduler", help="address of an existing Dask scheduler (default: a local cluster)")
    p.add_argument("--workers", type=int, default=2, help="worker processes of the local cluster (default 2)")
    p.add_argument("--threshold", type=int, help="grey level 0..255 that starts the objects (default: Otsu's)")
    p.add_argument("--dark", action="store_true", help="objects are darker than the background")
    p.add_argument("--min-area", type=int, default=100, help="smallest object kept, in pixels (default 100)")
    args = p.parse_args(argv)
    if args.threshold is not None and not 0 <= args.threshold <= 255:
        p.error("--threshold must lie in 0..255")
    if args.workers < 1:
        p.error("--workers must be at least 1")
    return args


def main(argv=None):
    args = parse_args(argv)
    if not os.path.isdir(args.directory):
        print(f"inspect_many: '{args.directory}' is not a directory", file=sys.stderr)
        return 2
    out_dir = os.path.abspath(args.output or os.path.join(args.directory, "inspect"))
    os.makedirs(out_dir, exist_ok=True)
    paths = [os.path.abspath(p) for p in pictures(args.directory)]

    import dask
    from dask.distributed import Client, LocalCluster

    # Workers keep their scratch files in the temporary directory, not in the current one.
    dask.config.set({"temporary-directory": tempfile.gettempdir()})
    cluster = None
    if args.scheduler:
        client = Client(args.scheduler)
    else:
        cluster = LocalCluster(n_workers=args.workers, processes=True, threads_per_worker=1,
                               dashboard_address=None, host="127.0.0.1")
        client = Client(cluster)
    try:
        futures = client.map(inspect_file, paths, out_dir=out_dir, threshold=args.threshold, dark=args.dark,
                             min_area=args.min_area, pure=False)
        rows = client.gather(futures)
    finally:
        client.close()
        if cluster is not None:
            cluster.close()

    with open(os.path.join(out_dir, "summary.json"), "w") as f:
        json.dump(rows, f, indent=1)
    print_table(rows)
    return 1 if any(r["error"] is not None for r in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
