// What is wrong on this page for somebody with a screen reader, low vision or large fingers: a list of sentences.
const wrong = [];
const visible = (e) => e.checkVisibility({ opacityProperty: true, visibilityProperty: true }) && e.getClientRects().length > 0;
const all = (selector) => [...document.querySelectorAll(selector)].filter(visible);
const told = (e) => `${e.tagName} ${e.className?.baseVal ?? e.className} "${(e.textContent ?? "").trim().slice(0, 30)}"`;
const check = (ok, what, e) => ok || wrong.push(what + ": " + told(e));

const root = document.documentElement;
check(/^(de|en)$/.test(root.lang) && document.title, "no language or title", root);
check(root.scrollWidth <= innerWidth, `wider than the window (${root.scrollWidth})`, root);
for (const [selector, count] of [["main", 1], ["h1", 1], ["header", 1], ["footer", 1]]) {
  check(all(selector).length === count, `not one ${selector}`, root);
}
let level = 0;
for (const heading of all("h1, h2, h3, h4")) {
  const now = Number(heading.tagName[1]);
  check(now <= level + 1, "a level of headings is skipped", heading);
  level = now;
}
const ids = [...document.querySelectorAll("[id]")].map((e) => e.id);
check(new Set(ids).size === ids.length, "an id stands twice", root);
for (const image of all("img")) {
  check(image.hasAttribute("alt"), "an image without alternative", image);
}
for (const drawing of all("svg[role=img]")) {
  check((drawing.getAttribute("aria-label") ?? "").length > 10, "a drawing without words", drawing);
}
for (const table of all("table")) {
  check(table.querySelector("th[scope], td") && (!table.tHead || table.querySelector("th[scope]")), "no scope", table);
}

const name = (e) => (e.getAttribute("aria-label") || [...e.labels ?? []].map((l) => l.textContent).join(" ") ||
  (e.getAttribute("aria-labelledby") ?? "").split(" ").map((id) => document.getElementById(id)?.textContent).join("") ||
  e.textContent || e.title || e.querySelector("img")?.alt || "").trim();
for (const e of all("a, button, input, select, textarea, summary, [role=button], nav, [tabindex='0']")) {
  check(name(e) !== "", "nothing names it", e);
  const box = e.getBoundingClientRect();
  const inline = e.tagName === "A" && getComputedStyle(e).display === "inline";
  const within = e.closest("label")?.getBoundingClientRect() ?? box;
  check(inline || e.closest("nav, .unseen, .skip, .leaflet-control") || e.tagName === "NAV" ||
    Math.max(box.height, within.height) >= 24, `too low to touch (${box.height})`, e);
}

const numbers = (colour) => {
  const [r, g, b, a = 1] = colour.match(/[\d.]+/g).map(Number);
  return colour.startsWith("color(") ? [r * 255, g * 255, b * 255, a] : [r, g, b, a];
};
const over = (top, under) => [0, 1, 2].map((i) => top[i] * top[3] + under[i] * (1 - top[3])).concat(1);
const ground = (e) => {
  const layers = [];
  for (let at = e; at; at = at.parentElement) {
    layers.unshift(numbers(getComputedStyle(at).backgroundColor));
  }
  return layers.reduce((under, top) => over(top, under), numbers(getComputedStyle(root).backgroundColor === "rgba(0, 0, 0, 0)"
    ? getComputedStyle(document.body).backgroundColor : getComputedStyle(root).backgroundColor));
};
const light = ([r, g, b]) => [r, g, b].map((v) => v / 255).map((v) => v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4)
  .reduce((sum, v, i) => sum + v * [0.2126, 0.7152, 0.0722][i], 0);
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
  const e = walker.currentNode.parentElement;
  if (walker.currentNode.data.trim() === "" || !visible(e) || e.closest("script, .unseen, .skip, [aria-pressed=false] .sign")) {
    continue;
  }
  const style = getComputedStyle(e);
  const text = e.closest("svg") ? style.fill : style.color;
  const under = ground(e.closest("svg") ? e.closest(".plot") : e);
  const [a, b] = [light(over(numbers(text), under)), light(under)].sort((x, y) => y - x);
  const wanted = parseFloat(style.fontSize) >= 24 || (parseFloat(style.fontSize) >= 18.6 && style.fontWeight >= 700) ? 3 : 4.5;
  check((a + 0.05) / (b + 0.05) >= wanted, `contrast ${((a + 0.05) / (b + 0.05)).toFixed(2)}`, e);
}
return [...new Set(wrong)].slice(0, 12);

