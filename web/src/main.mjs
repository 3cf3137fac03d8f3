// The page's entry point: nrv-engine.js is loaded before this script.
import {start} from './page.mjs';

start(window);
