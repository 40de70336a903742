// The owner's tracks: the ways he has recorded, on the map in the colours of connection or signal, and as a list.
import { api, choice, element, fill, number, owner, texts, timeText, toggle, typeName } from "./core.js";

const mostDrawn = 20; // tracks on the map, the newest
/** Classes of the received power, dBm: from what is good down; the colours run with them. */
export const strengths = [{ least: -85, colour: "--good" }, { least: -95, colour: "--wlan" }, { least: -105, colour: "--up" },
  { least: -Infinity, colour: "--bad" }];
const typeColours = { lte: "--lte", "5g": "--nr", "3g": "--umts", "2g": "--gsm", wlan: "--wlan" };

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}

export function strengthOf(rsrp) {
  return strengths.find(({ least }) => rsrp >= least) ?? strengths[strengths.length - 1];
}

/** The name of the colour of one row, by @p aspect. */
function colourOf(row, aspect) {
  return aspect === "type" ? typeColours[row.type] ?? "--other"
    : row.rsrp_dbm === null ? "--other" : strengthOf(row.rsrp_dbm).colour;
}

function strengthText({ least }, i) {
  return Number.isFinite(least) ? fill(texts.strengthFrom, least) : fill(texts.strengthBelow, strengths[i - 1].least);
}

export class Tracks {
  /** @param map Leaflet's; @param tools where its switches stand; @param section of the list. */
  constructor(map, tools, section) {
    this.map = map;
    this.layer = L.layerGroup();
    this.section = section;
    this.aspect = "type";
    this.drawn = new Map();
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.draw());
    this.load(tools).catch(() => {});
  }

  async load(tools) {
    const { tracks } = await api("tracks");
    this.list(tracks);
    if (tracks.length === 0) {
      return;
    }
    this.layer.addTo(this.map);
    this.legend = element("p", { class: "legend small" });
    this.map.getContainer().after(this.legend);
    tools.append(toggle([texts.tracks], true, (on) => {
      on ? this.layer.addTo(this.map) : this.layer.remove();
      this.legend.hidden = !on;
    }), ...choice([["type", texts.byType], ["rsrp", texts.bySignal]], this.aspect, (chosen) => {
      this.aspect = chosen;
      this.draw();
    }));
    for (const { track } of tracks.slice(0, mostDrawn)) {
      const { columns, rows } = await api("tracks/" + track);
      this.drawn.set(track, rows.map((row) => Object.fromEntries(columns.map((name, i) => [name, row[i]]))));
    }
    this.draw();
  }

  /** A line for each run of one colour; none joins two segments, or leads over a place that nobody knows. */
  draw() {
    if (!this.legend) {
      return;
    }
    this.layer.clearLayers();
    for (const rows of this.drawn.values()) {
      let run = [];
      let hue = "";
      const end = () => {
        if (run.length > 1) {
          L.polyline(run, { color: colour(hue), weight: 5, opacity: 0.85, interactive: false }).addTo(this.layer);
        }
      };
      let before = null;
      for (const row of rows) {
        const now = colourOf(row, this.aspect);
        const joined = before !== null && before.segment === row.segment && row.latitude !== null && before.latitude !== null;
        if (!joined || now !== hue) {
          end();
          run = joined ? [run[run.length - 1]] : [];
          hue = now;
        }
        if (row.latitude !== null) {
          run.push([row.latitude, row.longitude]);
        }
        before = row;
      }
      end();
    }
    this.explain();
  }

  explain() {
    const rows = [...this.drawn.values()].flat();
    const parts = this.aspect === "type"
      ? [...new Set(rows.map((row) => row.type))].map((type) => [typeColours[type] ?? "--other", typeName(type)])
      : [...strengths.map((each, i) => [each.colour, strengthText(each, i)]), ["--other", texts.strengthUnknown]];
    this.legend.replaceChildren(...parts.map(([hue, text]) => element("span", {},
      element("i", { class: "swatch", "data-hue": hue }), text)));
    // The policy of the page takes styles from scripts alone.
    this.legend.querySelectorAll("i").forEach((swatch) => {
      swatch.style.background = `var(${swatch.dataset.hue})`;
    });
    this.map.getContainer().dataset.tracks = String(this.drawn.size);
  }

  /** Moves the map to one track. */
  show(track) {
    const places = (this.drawn.get(track) ?? []).filter((row) => row.latitude !== null);
    if (places.length > 0) {
      this.map.fitBounds(L.latLngBounds(places.map((row) => [row.latitude, row.longitude])), { padding: [24, 24],
        maxZoom: 16, animate: false });
      this.map.getContainer().scrollIntoView({ block: "center" });
    }
  }

  list(tracks) {
    if (tracks.length === 0) {
      return;
    }
    this.section.hidden = false;
    const list = this.section.querySelector("ul");
    list.replaceChildren(...tracks.map((track) => {
      const minutes = track.ended_ms === null ? null : Math.round((track.ended_ms - track.started_ms) / 60000);
      const row = element("li", {}, element("button", { type: "button", class: "tool", click: () => this.show(track.track) },
        timeText(track.started_ms)),
        element("span", { class: "quiet" }, [fill(texts.trackPoints, number(track.points)),
          minutes === null ? texts.trackOpen : fill(texts.minutes, number(minutes))].join(" · ")),
        ...["csv", "geojson", "gpx", "json"].map((format) => element("a", { download: "", class: "tool",
          href: `/velometer/api/v1/tracks/${track.track}/export?userid=${owner}&format=${format}` },
        { csv: "CSV", geojson: "GeoJSON", gpx: "GPX", json: "JSON" }[format])));
      let sure = false;
      const button = element("button", { type: "button", class: "tool", click: async () => {
        if (!sure) {
          sure = true;
          button.textContent = texts.reallyRemove;
          return;
        }
        await api("tracks/" + track.track, undefined, "DELETE").then(() => row.remove(),
          (problem) => button.replaceWith(element("span", { class: "bad" }, problem.message)));
      } }, texts.remove);
      row.append(button);
      return row;
    }));
  }
}
