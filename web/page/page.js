// The page as a whole: the token first, then the views, which the fragment of the address chooses.
import {takeToken, token} from './api.js';
import {attempt, byId} from './dom.js';
import {openHistory, startHistory} from './history.js';
import {startLive} from './live.js';
import {redraw, startPlots} from './plots.js';
import {openSimulator, scenarioStep, startSimulator} from './simulator.js';
import {openTables, rowsChanged, startTables} from './tables.js';
import {changed, readAgain, startValues} from './values.js';

const opened = {tables: openTables, plots: redraw, simulator: openSimulator, history: openHistory};

function showView() {
  const name = location.hash.slice(1);
  const view = document.querySelector(`.view[id="${CSS.escape(name)}"]`) ?? byId('values');
  for (const one of document.querySelectorAll('.view')) one.hidden = one !== view;
  for (const link of document.querySelectorAll('nav a'))
    if (link.hash === `#${view.id}`) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  scrollTo(0, 0);
  opened[view.id]?.();
}

async function start() {
  byId('locked').hidden = true;
  await startValues();
  await startTables();
  startPlots();
  startSimulator();
  startHistory();
  const missed = () => { readAgain(); rowsChanged({}); };
  startLive({object: changed, row: rowsChanged, scenario: scenarioStep, missed}, missed, askForToken);
  addEventListener('hashchange', showView);
  showView();
}

function askForToken() {
  byId('locked').hidden = false;
  byId('locked').querySelector('form').addEventListener('submit', (event) => {
    event.preventDefault();
    if (takeToken(byId('address').value)) location.reload();
    else byId('address').setAttribute('aria-invalid', 'true');
  });
}

// The token leaves the address at once, so that it is not in the history of the browser.
if (takeToken(location.hash)) history.replaceState(null, '', location.pathname);
if (token() === '') {
  askForToken();
} else if (!await attempt(byId('state'), start)) {
  askForToken();
}
