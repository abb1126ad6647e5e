"use strict";

// Figures come from /metrics, asked for every two seconds; races and the state of the process from /events, and without
// that stream from the figures alone.
const ASK_MS = 2000, SAMPLES = 60, TOP = 10;
const $ = id => document.getElementById(id);
let before = null, first = null, paused = false, source = null, isStreaming = false, state = "";
const history = {};

// Text of OpenMetrics or of Prometheus: name -> [{labels, value}].
function parse(text) {
    const families = { };
    for (const line of text.split("\n")) {
        const sample = /^(\w+)(?:\{(.*)\})? (\S+)/.exec(line);
        if (!sample)
            continue;
        const labels = {};
        for (const label of (sample[2] || "").matchAll(/(\w+)="((?:[^"\\]|\\.)*)"/g))
            labels[label[1]] = label[2].replace(/\\(.)/g, (_, unit) => unit === "n" ? "\n" : unit);
        (families[sample[1]] ||= []).push({ labels, value: Number(sample[3]) });
    }
    return families;
}

const sum = samples => (samples || []).reduce((total, sample) => total + sample.value, 0);

// Sums by the values of labels.
function by(samples, ...names) {
    const sums = new Map();
    for (const sample of samples || []) {
        const key = names.map(name => sample.labels[name]).join("\t");
        sums.set(key, (sums.get(key) || 0) + sample.value);
    }
    return sums;
}

// The bound below which 99 % of the values since the last reading were; NaN if there were none.
function percentile(now, old, name) {
    const late = by(now[name + "_bucket"], "le"), early = by(old && old[name + "_bucket"], "le");
    const counts = [...late].map(([bound, count]) => [Number(bound.replace("+Inf", "Infinity")), count - (early.get(bound) || 0)])
        .sort((a, b) => a[0] - b[0]);
    const total = counts.length ? counts[counts.length - 1][1] : 0;
    return total > 0 ? counts.find(([, count]) => count >= total * 0.99)[0] : NaN;
}

const plain = value => value >= 100 ? Math.round(value).toLocaleString("en") : String(Math.round(value * 10) / 10);
const seconds = value => Number.isNaN(value) ? "–" : value === Infinity ? "> 1 s"
    : value < 0.001 ? `≤ ${Math.round(value * 1e6)} µs` : value < 1 ? `≤ ${plain(value * 1000)} ms` : `≤ ${plain(value)} s`;

function curve(values) {
    const space = "http://www.w3.org/2000/svg";
    const drawing = document.createElementNS(space, "svg"), line = document.createElementNS(space, "polyline");
    const most = Math.max(...values, 1e-9);
    drawing.setAttribute("viewBox", `0 0 ${SAMPLES - 1} 20`);
    drawing.setAttribute("preserveAspectRatio", "none");
    drawing.setAttribute("aria-hidden", "true");
    line.setAttribute("points", values.map((value, at) => `${SAMPLES - values.length + at},${19 - 18 * value / most}`).join(" "));
    drawing.append(line);
    return drawing;
}

function make(kind, text, ...children) {
    const element = document.createElement(kind);
    if (text !== null)
        element.textContent = text; // never HTML: names are the players' own
    element.append(...children);
    return element;
}

function emptyRow(text) {
    const cell = make("td", text);
    cell.colSpan = 4;
    cell.className = "whole";
    return make("tr", null, cell);
}

function showFigures(now, passed) {
    const rate = name => before && passed > 0 ? (sum(now[name]) - sum(before[name])) / passed : 0;
    const commands = rate("commonground_commands_received_total") + rate("commonground_commands_sent_total");
    const lag = percentile(now, before, "commonground_tick_lag_seconds");
    const figures = [
        ["Players", now.arena_players && plain(sum(now.arena_players))],
        ["Races", now.arena_races && plain(sum(now.arena_races))],
        ["Pawns", now.arena_pawns && plain(sum(now.arena_pawns))],
        ["Connections", plain(sum(now.commonground_listener_connections))],
        ["Commands/s", plain(commands), "commands", commands],
        ["Tick lag, p99", seconds(lag), "lag", Number.isFinite(lag) ? lag : 0],
        ["Tick work, p99", seconds(percentile(now, before, "commonground_tick_work_seconds"))],
        ["Memory", plain(sum(now.process_resident_memory_bytes) / 1048576) + " MiB"],
        ["Processor", plain(100 * rate("process_cpu_seconds_total")) + " %"],
    ];
    $("figures").replaceChildren(...figures.filter(figure => figure[1]).map(([name, text, kept, value]) => {
        const box = make("div", null, make("dt", name), make("dd", text));
        if (kept && before) {
            (history[kept] ||= []).push(value);
            history[kept] = history[kept].slice(-SAMPLES);
            box.append(curve(history[kept]));
        }
        return box;
    }));
    const role = now.arena_role ? now.arena_role[0].labels.role : "";
    $("role").textContent = role;
    document.title = `arena ${role}`;
    if (now.arena_races)
        $("racing").hidden = false;
    if (now.arena_races && !isStreaming)
        $("races").replaceChildren(make("p", `${sum(now.arena_races)} races with ${sum(now.arena_pawns)} pawns. Their places `
            + "on the track come with the event stream, which this page does not have now."));
}

function showCommands(now, passed) {
    const rows = new Map();
    ["received", "sent", "refused"].forEach((kind, column) => {
        const name = `commonground_commands_${kind}_total`, old = by(before && before[name], "command");
        for (const [command, count] of by(now[name], "command")) {
            const row = rows.get(command) || [0, 0, 0];
            row[column] = before && passed > 0 ? (count - (old.get(command) || 0)) / passed : 0;
            rows.set(command, row);
        }
    });
    const busy = [...rows].map(([command, row]) => [command, row, row[0] + row[1] + row[2]]).filter(row => row[2] > 0)
        .sort((a, b) => b[2] - a[2]).slice(0, TOP);
    $("commands").replaceChildren(...busy.map(([command, row]) =>
        make("tr", null, make("td", command), ...row.map(value => make("td", plain(value))))));
    if (!busy.length)
        $("commands").append(emptyRow("none in the last two seconds"));
}

function showEnds(now) {
    const name = "commonground_listener_ended_total";
    const old = by(first[name], "cause", "listener");
    const rows = [...by(now[name], "cause", "listener")].filter(row => row[1] > 0).sort((a, b) => b[1] - a[1]);
    $("ends").replaceChildren(...rows.map(([key, count]) =>
        make("tr", null, ...key.split("\t").map(text => make("td", text)), make("td", plain(count)),
             make("td", plain(count - (old.get(key) || 0))))));
    if (!rows.length)
        $("ends").append(emptyRow("none yet"));
}

function showRaces(races) {
    $("racing").hidden = false;
    // Lanes stay the same elements, so that pawns move and do not jump.
    const old = new Map([...$("races").querySelectorAll(".lane")].map(lane => [lane.dataset.key, lane]));
    const lane = (race, pawn, number) => {
        const key = `${race.id}\t${number}`;
        const made = old.get(key) || make("div", null, make("span", ""), make("div", null, make("i", null)), make("span", ""));
        const metres = `${Math.round(pawn.distance)} m`;
        const track = made.children[1];
        made.dataset.key = key;
        made.className = pawn.left ? "lane out" : "lane";
        made.children[0].textContent = pawn.name;
        made.children[2].textContent = pawn.place > 0 ? `place ${pawn.place}` : pawn.left ? "left" : metres;
        track.className = "track";
        track.firstChild.style.left = `${Math.min(100, Math.max(4, 100 * pawn.distance / race.length))}%`;
        for (const [name, value] of [["role", "meter"], ["aria-label", pawn.name], ["aria-valuemin", 0],
                                     ["aria-valuemax", race.length], ["aria-valuenow", Math.round(pawn.distance)]])
            track.setAttribute(name, value);
        return made;
    };
    $("races").replaceChildren(...races.map(race => {
        const made = make("div", null, make("h3", race.name + " ", make("span", race.state)),
                          ...race.pawns.map((pawn, number) => lane(race, pawn, number)));
        made.className = "race";
        return made;
    }));
    if (!races.length)
        $("races").append(make("p", "No race now."));
}

// Spoken by screen readers, so it changes only with the state.
function showStatus(isThere) {
    const text = !isThere ? "no answer from the process" : paused ? "paused"
        : (state ? state + ", " : "") + (isStreaming ? "live" : "figures every two seconds");
    if ($("status").textContent !== text)
        $("status").textContent = text;
    $("status").classList.toggle("bad", !isThere || state === "draining");
}

function listen() {
    if (!window.EventSource || paused || document.hidden || source)
        return;
    source = new EventSource("/events");
    source.onopen = () => { isStreaming = true; };
    source.onerror = () => {
        isStreaming = false;
        if (source && source.readyState === EventSource.CLOSED)
            source = null; // refused: asked again with the next figures
    };
    source.addEventListener("state", event => { state = event.data; showStatus(true); });
    source.addEventListener("races", event => showRaces(JSON.parse(event.data)));
}

function unlisten() {
    if (source)
        source.close();
    source = null;
    isStreaming = false;
}

let time = 0, timer = 0;
async function ask() {
    clearTimeout(timer);
    if (paused || document.hidden)
        return;
    try {
        const answer = await fetch("/metrics", { cache: "no-store" });
        const now = parse(await answer.text());
        const passed = (performance.now() - time) / 1000;
        time = performance.now();
        first ||= now;
        showFigures(now, passed);
        showCommands(now, passed);
        showEnds(now);
        before = now;
        listen();
        showStatus(true);
    } catch (fault) {
        before = null; // a new process counts from 0
        showStatus(false);
    }
    clearTimeout(timer);
    timer = setTimeout(ask, ASK_MS);
}

function setPaused(isPaused) {
    paused = isPaused;
    $("pause").setAttribute("aria-pressed", String(paused));
    if (paused)
        unlisten();
    showStatus(true);
    ask();
}

$("pause").addEventListener("click", () => setPaused(!paused));
document.addEventListener("keydown", event => {
    if (event.key === "p" && !event.ctrlKey && !event.metaKey && !event.altKey)
        setPaused(!paused);
});
document.addEventListener("visibilitychange", () => {
    if (document.hidden)
        unlisten();
    else
        ask();
});
ask();
