// A user's page, or a shared view of one: charts, map, and what can be changed.
import { manage } from "./manage.js";
import { TestMap } from "./map.js";
import { Tracks } from "./tracks.js";
import { Hours, Types } from "./spreads.js";
import { TimeCharts } from "./timecharts.js";
import { whenSeen } from "./core.js";

manage();
const time = document.getElementById("time");
if (time) {
  new TimeCharts(time);
  /** @type {HTMLSelectElement} */
  const select = document.querySelector("form.filters select[name=type]");
  const types = [...select.options];
  new Hours(document.getElementById("hours"), types.map((option) => [option.value, option.textContent]));
  new Types(document.getElementById("types"));
}
const map = document.getElementById("map");
if (map) {
  const tools = map.parentElement.querySelector(".tools");
  whenSeen(map, () => {
    const tests = new TestMap(map, tools);
    const tracks = document.getElementById("tracks");
    if (tracks) {
      new Tracks(tests.map, tools, tracks);
    }
  });
}
