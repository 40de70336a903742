// What all scripts share: texts, numbers, the interface, and making elements.

/** @type {Record<string, any>} */
export const texts = JSON.parse(document.getElementById("texts")?.textContent ?? "{}");
export const language = document.documentElement.lang;
export const owner = document.body.dataset.owner ?? "";

const patience = 3000; // ms until also what nobody has scrolled to is there, for a printer
const credential = new URLSearchParams(document.body.dataset.credential);
const locale = language === "de" ? "de-CH" : "en-US";
const root = "/velometer/api/v1/";
const filterNames = ["from", "to", "type", "server", "series", "location", "operator", "verified"];

/** The parameters of this page's address that filter tests. */
export function filters() {
  const chosen = new URLSearchParams();
  for (const [name, value] of new URLSearchParams(location.search)) {
    if (filterNames.includes(name) && value !== "") {
      chosen.set(name, value);
    }
  }
  return chosen;
}

/** @p text with the values in the places of %1, %2. */
export function fill(text, ...values) {
  return text.replace(/%(\d)/g, (whole, number) => values[number - 1] ?? whole);
}

/** Asks the interface; throws with its sentence when it refuses. */
export async function api(path, parameters = new URLSearchParams(), method = "GET", body) {
  const query = new URLSearchParams(parameters);
  /** @type {Record<string, string>} */
  const headers = {};
  if (owner !== "") {
    headers["Velometer-User"] = owner;
  } else {
    credential.forEach((value, name) => query.set(name, value));
  }
  if (body !== undefined) {
    headers["Content-Type"] = "application/json";
  }
  const question = query.toString();
  const answer = await fetch(root + path + (question === "" ? "" : "?" + question), {
    method, headers, credentials: "omit", body: body === undefined ? undefined : JSON.stringify(body),
  }).catch(() => {
    throw new Error(texts.failed);
  });
  if (!answer.ok) {
    throw new Error((await answer.text()).trim() || texts.failed);
  }
  return answer.headers.get("Content-Type")?.includes("json") ? answer.json() : null;
}

/** The address of one test's page for whoever looks. */
export function testAddress(id) {
  const query = new URLSearchParams([["page", "Test"], ...credential, ["language", language], ["test", id]]);
  return "/velometer/Controller?" + query;
}

const three = new Intl.NumberFormat(locale, { maximumSignificantDigits: 3 });
const rateUnits = [{ divisor: 1e9, name: "Gbit/s" }, { divisor: 1e6, name: "Mbit/s" }, { divisor: 1e3, name: "kbit/s" }];

/** How figures of @p metric are shown: divided by what, with which unit, for values up to @p greatest. */
export function unitOf(metric, greatest) {
  if (metric.endsWith("rtt")) {
    return { divisor: 1e6, name: "ms" };
  }
  return rateUnits.find(({ divisor }) => greatest >= divisor) ?? rateUnits[2];
}

export function number(value) {
  return three.format(value);
}

export function figure(metric, value) {
  if (value === null || value === undefined) {
    return "–";
  }
  const unit = unitOf(metric, value);
  return three.format(value / unit.divisor) + " " + unit.name;
}

/** Writes times in UTC, as the list does. */
export function timeFormat(options) {
  return new Intl.DateTimeFormat(locale, { timeZone: "UTC", ...options });
}

const moment = timeFormat({ dateStyle: "medium", timeStyle: "short" });
export function timeText(ms) {
  return moment.format(ms);
}

/** An element with attributes and content; texts are only ever texts. */
export function element(name, attributes = {}, ...content) {
  return furnish(document.createElement(name), attributes, content);
}

export function svg(name, attributes = {}, ...content) {
  return furnish(document.createElementNS("http://www.w3.org/2000/svg", name), attributes, content);
}

function furnish(made, attributes, content) {
  for (const [key, value] of Object.entries(attributes)) {
    if (typeof value === "function") {
      made.addEventListener(key, value);
    } else if (value !== undefined && value !== null) {
      made.setAttribute(key, value);
    }
  }
  made.append(...content);
  return made;
}

export function typeName(type) {
  return texts.types[type] ?? type;
}

export const letters = { wlan: "W", "2g": "2G", "3g": "3G", lte: "4G", "5g": "5G", ethernet: "E", cdma: "C",
  bluetooth: "B", wimax: "X", mixed: "M", other: "?" };

export function sign(type) {
  return element("span", { class: "sign t-" + type, "aria-hidden": "true" }, letters[type] ?? "?");
}

/** A button that stays pressed; @p change is told. */
export function toggle(content, pressed, change) {
  const button = element("button", { type: "button", class: "tool", "aria-pressed": String(pressed) }, ...content);
  button.addEventListener("click", () => {
    const now = button.getAttribute("aria-pressed") !== "true";
    button.setAttribute("aria-pressed", String(now));
    change(now);
  });
  return button;
}

/** Buttons of which one is pressed. */
export function choice(values, chosen, change) {
  const buttons = values.map(([value, text]) => element("button", {
    type: "button", class: "tool", "aria-pressed": String(value === chosen),
    click: () => {
      buttons.forEach((button, i) => button.setAttribute("aria-pressed", String(values[i][0] === value)));
      change(value);
    },
  }, text));
  return buttons;
}

/** Calls @p show when @p target comes near the window, once. */
export function whenSeen(target, show) {
  let shown = false;
  const once = () => {
    observer.disconnect();
    if (!shown) {
      shown = true;
      show();
    }
  };
  const observer = new IntersectionObserver((entries) => {
    if (entries.some((entry) => entry.isIntersecting)) {
      once();
    }
  }, { rootMargin: "300px" });
  observer.observe(target);
  setTimeout(once, patience);
}
