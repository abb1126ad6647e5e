"use strict";

// What each word of a schema means, as in the document of wirelens schema --json.
const WORDS = JSON.parse(document.getElementById("meanings").textContent);
const data = JSON.parse(document.getElementById("data").textContent);
const byName = new Map(data.map((entry) => [entry.name, entry]));
const $ = (id) => document.getElementById(id);

// An element; children are elements or texts. Attributes that are null are left out.
function make(tag, attributes, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes || {})) {
        if (value !== null && value !== undefined) {
            element.setAttribute(name, value);
        }
    }
    element.append(...children.flat().filter((child) => child !== null && child !== undefined));
    return element;
}

function linkTo(name) {
    return byName.has(name) ? make("a", {href: "#" + name}, name) : name;
}

function listed(names) {
    return names.flatMap((name, i) => (i ? [", ", linkTo(name)] : [linkTo(name)]));
}

// A text with a link at each class that it names.
function linked(text, own) {
    return text.split(/(\w+)/).map((word) => (word !== own && byName.has(word) ? linkTo(word) : word));
}

// The index ------------------------------------------------------------------------------------------------------

const FAMILIES = [["command", "Commands"], ["record", "Records"], ["message", "Messages of packs"]];

function showIndex() {
    for (const [family, title] of FAMILIES) {
        const list = make("ul", {});
        const group = make("details", {"data-family": family}, make("summary", {}, title), list);
        for (const entry of data.filter((one) => one.family === family)) {
            list.append(make("li", {}, make("a", {href: "#" + entry.name},
                entry.id ? make("span", {}, entry.id) : null, make("b", {}, entry.name))));
        }
        document.querySelector(".classes").append(group);
    }
    $("glossary").append(...Object.entries(WORDS).flatMap(([word, meaning]) =>
        [make("dt", {id: "word-" + word}, make("code", {}, word)), make("dd", {}, meaning)]));
}

// A class --------------------------------------------------------------------------------------------------------

const TITLES = {command: "Command", record: "Record", message: "Message of a pack"};
const carried = (name) => data.filter((one) => one.envelope === name || one.orEnvelope === name).map((one) => one.name);
const users = (name) => data.filter((one) => one.fields.some((field) => field.record === name)).map((one) => one.name);

function factsOf(entry) {
    const fact = (name, ...value) => make("li", {}, make("b", {}, name + " "), ...value);
    return make("ul", {class: "facts"},
        make("li", {}, TITLES[entry.family]),
        entry.id ? fact("id", make("code", {}, entry.id), ` (${parseInt(entry.id, 16)})`) : null,
        entry.base ? fact("on", linkTo(entry.base)) : null,
        entry.envelope ? fact("in", listed([entry.envelope].concat(entry.orEnvelope || []))) : null,
        entry.family === "command" ? null : fact("packager", entry.forms),
        fact("at least", `${entry.smallest} bytes`));
}

function rowsOf(field) {
    if (field.head) {
        return [make("tr", {}, make("th", {scope: "row"}, "head"),
            make("td", {class: "type"}, make("a", {href: "#heads"}, field.head)),
            make("td", {class: "default none"}, "–"))].concat(quirksOf(field));
    }
    // The default of a record is that of its fields, on its own page.
    const preset = field.record && field.default && field.default.startsWith("{") ? "" : field.default;
    const type = field.record
        ? [field.type.slice(0, field.type.indexOf(field.record)), linkTo(field.record),
            field.type.slice(field.type.indexOf(field.record) + field.record.length)]
        : [field.type];
    return [make("tr", {class: field.isColumn ? "column" : null},
        make("th", {scope: "row"}, field.name || "not kept"),
        make("td", {class: "type"}, ...type),
        make("td", {class: "default" + (preset ? "" : " none")}, preset || "–"))].concat(quirksOf(field));
}

function quirksOf(field) {
    const note = field.note ? [make("tr", {class: "quirk note"}, make("td", {colspan: 3}, ...linked(field.note)))] : [];
    return note.concat((field.words || []).map((word) => make("tr", {class: "quirk"},
        make("td", {colspan: 3}, make("b", {}, word), " – ", WORDS[word] || ""))));
}

function fieldsOf(entry) {
    if (entry.fields.length === 0) {
        return [make("p", {}, "No fields of its own.")];
    }
    return [make("table", {class: "fields"},
        make("thead", {}, make("tr", {}, make("th", {scope: "col"}, "Field"), make("th", {scope: "col"}, "Type"),
            make("th", {scope: "col"}, "Default"))),
        make("tbody", {}, entry.fields.flatMap(rowsOf)))];
}

function exampleOf(entry) {
    if (entry.example.length === 0) {
        return [];
    }
    const explained = make("p", {class: "explained", "aria-live": "polite"});
    const list = make("ul", {class: "pieces", "aria-label": "Bytes of the example"});
    let offset = 0;
    const pieces = entry.example.map(([bytes, size, name, value, part]) => {
        const at = offset;
        offset += size;
        const piece = make("button", {type: "button", class: "piece " + part, "aria-pressed": "false"}, bytes);
        const explain = () => {
            pieces.forEach((other) => other.setAttribute("aria-pressed", String(other === piece)));
            const place = size === 1 ? `byte ${at}` : size === 0 ? `no bytes, at ${at}` : `bytes ${at} to ${at + size - 1}`;
            const field = entry.fields.find((one) => one.name === name);
            explained.replaceChildren(make("b", {}, name), " = ", make("span", {class: "value"}, value),
                make("small", {}, `${place}, ${size} in all` + (field ? `: ${field.type}` : "")));
        };
        piece.addEventListener("mouseenter", explain);
        piece.addEventListener("focus", explain);
        piece.addEventListener("click", explain);
        list.append(make("li", {}, piece));
        return piece;
    });
    list.addEventListener("keydown", (event) => {
        const step = {ArrowRight: 1, ArrowLeft: -1}[event.key];
        const next = pieces[pieces.indexOf(document.activeElement) + (step || 0)];
        if (step && next) {
            event.preventDefault();
            next.focus();
        }
    });
    explained.append(make("small", {}, "Point at bytes, or go through them with the arrows: what they say is here."));
    return [make("section", {class: "example"}, make("h2", {}, "Example"),
        make("p", {}, entry.family === "command" ? "A whole stream frame" : "All bytes of one object",
            `, ${offset} bytes, with texts as a host with 16-bit wide characters writes them.`),
        list, explained)];
}

function showClass(entry) {
    const relations = [];
    const relate = (title, names) => {
        if (names && names.length) {
            relations.push(make("p", {}, make("b", {}, title + " "), ...listed(names)));
        }
    };
    relate("Shares its id with", entry.shares);
    relate("Carries", carried(entry.name));
    relate("Part of", users(entry.name));
    $("class").replaceChildren(make("h1", {}, entry.name), factsOf(entry),
        ...(entry.comment ? [make("p", {class: "lead"}, ...linked(entry.comment, entry.name))] : []), ...relations,
        make("h2", {}, "Fields in wire order"), ...fieldsOf(entry), ...exampleOf(entry));
}

function show() {
    const name = decodeURIComponent(location.hash.slice(1));
    const entry = byName.get(name);
    $("class").hidden = !entry;
    $("prose").hidden = Boolean(entry);
    document.body.classList.toggle("has-class", Boolean(entry));
    document.querySelectorAll(".index a[aria-current]").forEach((link) => link.removeAttribute("aria-current"));
    document.title = (entry ? name + " – " : "") + "commonground protocol reference";
    const link = document.querySelector(`.index a[href="#${CSS.escape(name)}"]`);
    if (link) {
        link.setAttribute("aria-current", "page");
    }
    if (entry) {
        showClass(entry);
        link.closest("details").open = true;
        link.scrollIntoView({block: "nearest"});
        window.scrollTo(0, 0);
    } else {
        const section = name && $(name);
        section ? section.scrollIntoView() : window.scrollTo(0, 0);
    }
}

// The search -----------------------------------------------------------------------------------------------------

const MOST_FOUND = 60;
let found = [];
let chosen = 0;

// How well a class fits, from 0, and why; null if it does not.
function fit(entry, query) {
    const name = entry.name.toLowerCase();
    const bare = name.replace(/^c?cmd(g[a-z]_)?/, "");
    if (name === query || bare === query) {
        return [0, ""];
    }
    if (entry.id && (entry.id.startsWith(query) || entry.id.slice(2).startsWith(query)
        || String(parseInt(entry.id, 16)) === query)) {
        return [1, ""];
    }
    if (name.startsWith(query) || bare.startsWith(query)) {
        return [2, ""];
    }
    if (name.includes(query)) {
        return [3, ""];
    }
    const field = entry.fields.find((one) => (one.name || "").toLowerCase().replace(/^m_/, "").startsWith(query))
        || entry.fields.find((one) => (one.name || "").toLowerCase().includes(query));
    return field ? [4, field.name] : null;
}

function marked(text, query) {
    const at = text.toLowerCase().indexOf(query);
    return at < 0 ? [text] : [text.slice(0, at), make("mark", {}, text.slice(at, at + query.length)),
        text.slice(at + query.length)];
}

function choose(place) {
    const items = $("results").querySelectorAll("[role=option]");
    if (items.length === 0) {
        return;
    }
    chosen = (place + items.length) % items.length;
    items.forEach((item, i) => item.setAttribute("aria-selected", String(i === chosen)));
    items[chosen].scrollIntoView({block: "nearest"});
    $("query").setAttribute("aria-activedescendant", items[chosen].id);
}

function close() {
    $("results").hidden = true;
    $("query").setAttribute("aria-expanded", "false");
    $("query").removeAttribute("aria-activedescendant");
}

function open(entry) {
    close();
    $("query").value = "";
    $("query").blur();
    if (location.hash === "#" + entry.name) {
        show();
    }
    location.hash = entry.name;
}

function search() {
    const query = $("query").value.trim().toLowerCase();
    if (!query) {
        close();
        return;
    }
    const all = data.map((entry) => [entry, fit(entry, query)]).filter((one) => one[1]);
    all.sort((a, b) => a[1][0] - b[1][0] || a[0].name.length - b[0].name.length || a[0].name.localeCompare(b[0].name));
    found = all.slice(0, MOST_FOUND).map((one) => one[0]);
    const items = all.slice(0, MOST_FOUND).map(([entry, [, field]], i) => {
        const item = make("li", {id: "found-" + i, role: "option", "aria-selected": "false"}, ...marked(entry.name, query),
            make("small", {}, ...marked(entry.id || TITLES[entry.family].toLowerCase(), query),
                ...(field ? [" · field ", ...marked(field, query)] : [])));
        item.addEventListener("mousedown", (event) => {
            event.preventDefault();
            open(entry);
        });
        item.addEventListener("mousemove", () => chosen !== i && choose(i));
        return item;
    });
    if (all.length > MOST_FOUND) {
        items.push(make("li", {class: "none"}, `and ${all.length - MOST_FOUND} more`));
    }
    $("results").replaceChildren(...(items.length ? items : [make("li", {class: "none"}, "Nothing has this in its name.")]));
    $("results").hidden = false;
    $("query").setAttribute("aria-expanded", "true");
    choose(0);
}

$("query").addEventListener("input", search);
$("query").addEventListener("focus", search);
$("query").addEventListener("blur", close);
$("query").addEventListener("keydown", (event) => {
    if (event.key === "ArrowDown" || event.key === "ArrowUp") {
        event.preventDefault();
        choose(chosen + (event.key === "ArrowDown" ? 1 : -1));
    } else if (event.key === "Enter" && !$("results").hidden && found[chosen]) {
        event.preventDefault();
        open(found[chosen]);
        $("main").focus({preventScroll: true});
    } else if (event.key === "Escape") {
        $("query").value = "";
        close();
    }
});
document.addEventListener("keydown", (event) => {
    const isTyping = /^(INPUT|TEXTAREA|SELECT)$/.test(document.activeElement.tagName);
    if (event.key === "/" && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
        event.preventDefault();
        $("query").focus();
        $("query").select();
    }
});
window.addEventListener("hashchange", show);
showIndex();
show();
