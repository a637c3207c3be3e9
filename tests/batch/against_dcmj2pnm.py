#!/usr/bin/env python3
"""Times ei4convert against dcmj2pnm (DCMTK) on the same pictures, one run after the other on one core.

against_dcmj2pnm.py CONVERTER EI4MAKE FOLDER SCRATCH [ROUNDS [RUNS]]

FOLDER holds NAME.raw files, as ei4make --size reads them, and images.tsv, whose tab-separated columns begin: name,
width, height, bytes_per_pixel, significant_bits, intercept, slope, window, level. SCRATCH receives the .ei4 and DICOM
files. Most of what dcmj2pnm takes for a small picture is reading its data dictionary, of which these files need little;
so it runs with a dictionary of a few lines ("few"), and for uncompressed DICOM also as it comes. dcmj2pnm reads
uncompressed DICOM and lossless JPEG; JPEG-LS takes dcml2pnm, which writes no JPEG: it writes a PGM or PPM.

Contestants take turns within each round; a figure is the median over ROUNDS (default 3) of the mean over RUNS (default
5) of one run's processor time, user and system together, as the kernel accounts it to the process. Prints
tab-separated lines.
"""
import os
import re
import statistics
import subprocess
import sys
import time

FEW = re.compile(r"\((0002,00|0008,001[68]|0028,(00(02|04|06|08|10|11)|01|0301|105)|7fe0,0010)", re.IGNORECASE)


def few_words(scratch):
    """An environment in which DCMTK's dictionary holds only what describes pixels."""
    path = os.path.join(scratch, "few.dic")
    with open("/usr/share/libdcmtk17/dicom.dic", encoding="utf-8") as whole, open(path, "w", encoding="utf-8") as few:
        few.writelines(line for line in whole if FEW.match(line))
    return {"DCMDICTPATH": path}


def run(words, environment):
    """Runs a program and returns its processor time in milliseconds."""
    null = os.open(os.devnull, os.O_WRONLY)
    process = os.posix_spawn(words[0], words, {**os.environ, **environment},
                             file_actions=[(os.POSIX_SPAWN_DUP2, null, 1), (os.POSIX_SPAWN_DUP2, null, 2)])
    os.close(null)
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        sys.exit(f"failed: {' '.join(words)}")
    return 1000 * (usage.ru_utime + usage.ru_stime)


def make_dicom(image, raw, path):
    colour = image["bytes_per_pixel"] == "3"
    stored = 16 if image["bytes_per_pixel"] == "2" else 8
    bits = int(image["significant_bits"])
    uid = f"1.2.826.0.1.3680043.2.1143.1.{sum(map(ord, image['name']))}"
    lines = ["(0008,0016) UI =SecondaryCaptureImageStorage", f"(0008,0018) UI [{uid}]", "(0008,0060) CS [OT]",
             f"(0020,000d) UI [{uid}.1]", f"(0020,000e) UI [{uid}.2]",
             f"(0028,0002) US {3 if colour else 1}", f"(0028,0004) CS [{'RGB' if colour else 'MONOCHROME2'}]",
             f"(0028,0010) US {image['height']}", f"(0028,0011) US {image['width']}", f"(0028,0100) US {stored}",
             f"(0028,0101) US {bits}", f"(0028,0102) US {bits - 1}", "(0028,0103) US 0"]
    if colour:
        lines.append("(0028,0006) US 0")
    else:
        lines += [f"(0028,1050) DS [{image['level']}]", f"(0028,1051) DS [{image['window']}]",
                  f"(0028,1052) DS [{image['intercept']}]", f"(0028,1053) DS [{image['slope']}]"]
    lines.append(f"(7fe0,0010) {'OW' if stored == 16 else 'OB'} ={raw}")
    with open(path + ".dump", "w", encoding="ascii") as dump:
        dump.write("\n".join(lines) + "\n")
    subprocess.run(["dump2dcm", "+te", path + ".dump", path], check=True)


def make_files(image, folder, scratch, ei4make):
    """The same pixels in each form; returns their paths."""
    name = image["name"]
    raw = os.path.join(folder, name + ".raw")
    paths = {form: os.path.join(scratch, f"{name}.{form}")
             for form in ("ei4", "dcm", "jpll.dcm", "jpls.dcm")}
    letters = {"1": "M08", "2": "M16", "3": "RGB"}[image["bytes_per_pixel"]]
    subprocess.run([ei4make, "--size", f"{image['width']}x{image['height']}", "--format", letters, "--bits",
                    image["significant_bits"], "--slope", image["slope"], "--intercept", image["intercept"], "--window",
                    image["window"], "--level", image["level"], raw, paths["ei4"]], check=True)
    make_dicom(image, raw, paths["dcm"])
    subprocess.run(["dcmcjpeg", "+e1", paths["dcm"], paths["jpll.dcm"]], check=True)
    subprocess.run(["dcmcjpls", "+el", paths["dcm"], paths["jpls.dcm"]], check=True)
    return paths


def commands(image, paths, converter, scratch, few):
    """Job name to contestant to command, environment and input."""
    jpeg = ["+oj", "+Jq", "90", "+Js4"]
    contestants = {"dcm": ("/usr/bin/dcmj2pnm", "dcm", jpeg, {}),
                   "dcm few": ("/usr/bin/dcmj2pnm", "dcm", jpeg, few),
                   "jpll few": ("/usr/bin/dcmj2pnm", "jpll.dcm", jpeg, few),
                   "jpls few": ("/usr/bin/dcml2pnm", "jpls.dcm", ["+op"], few)}
    window = [] if image["bytes_per_pixel"] == "3" else ["+Wi", "1"]
    along = "+Sxv" if int(image["width"]) >= int(image["height"]) else "+Syv"
    jobs = {}
    for job, side in (("thumbnail", 128), ("preview", 1024), ("full", None)):
        box = [] if side is None else ["-geom", f"{side}x{side}"]
        scale = [] if side is None else [along, str(side)]
        jobs[job] = {"ei4": ([converter, "-in", paths["ei4"], *box, "-out", os.path.join(scratch, f"{job}.ei4.jpg"),
                              "-jpgquality", "90"], {}, paths["ei4"])}
        for name, (program, form, target, environment) in contestants.items():
            output = os.path.join(scratch, f"{job}.{form}.out")
            jobs[job][name] = ([program, *window, *scale, *target, paths[form], output], environment, paths[form])
    return jobs


def main():
    converter, ei4make, folder, scratch = sys.argv[1:5]
    rounds, runs = (int(word) for word in (sys.argv[5:7] + ["3", "5"][len(sys.argv) - 5:])[:2])
    os.makedirs(scratch, exist_ok=True)
    with open(os.path.join(folder, "images.tsv"), encoding="utf-8") as table:
        header, *rows = (line.rstrip("\n").split("\t") for line in table)
    few = few_words(scratch)
    images = [dict(zip(header, row)) for row in rows]
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    print(f"# {time.strftime('%Y-%m-%d %H:%M')}, {rounds} rounds of {runs} runs, load {os.getloadavg()[0]:.1f}")
    print("image\tjob\tcontestant\tms\tleast_round\tmost_round\tinput_bytes")
    for image in images:
        paths = make_files(image, folder, scratch, ei4make)
        for job, contestants in commands(image, paths, converter, scratch, few).items():
            means = {contestant: [] for contestant in contestants}
            for _ in range(rounds):
                for contestant, (words, environment, _) in contestants.items():
                    means[contestant].append(statistics.mean(run(words, environment) for _ in range(runs)))
            for contestant, values in means.items():
                figures = (f"{value:.2f}" for value in (statistics.median(values), min(values), max(values)))
                print(image["name"], job, contestant, *figures, os.path.getsize(contestants[contestant][2]), sep="\t",
                      flush=True)
    print(f"# load {os.getloadavg()[0]:.1f} at the end")


if __name__ == "__main__":
    main()
